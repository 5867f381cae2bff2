#pragma once

#include "host/data/Column.h"
#include "host/data/ReadSettings.h"
#include "host/data/Variable.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace korvana {

/// Names of the cases, kept in one block of text.
struct CaseNames {
    std::string text;
    std::vector<std::uint64_t> ends; ///< end of each name in the text; empty = the cases have no names
};

/// More variables than this are refused: variable numbers are 16-bit elsewhere, and expressions number one
/// value more than there are variables.
inline constexpr int maxVariables = 32766;

/// A table of cases by variables, stored by columns. Movable, not copyable. Indices count from 0; the numbers
/// that users write count from 1.
class DataSet {
public:
    /// @param path       the file as the user named it
    /// @param caseCount  0 or more
    DataSet(std::string path, int caseCount);
    DataSet(DataSet&&) noexcept = default;
    DataSet& operator=(DataSet&&) noexcept = default;
    DataSet(const DataSet&) = delete;
    DataSet& operator=(const DataSet&) = delete;
    ~DataSet() = default;

    const std::string& path() const { return path_; }
    std::string fileName() const; ///< the last component of the path

    int caseCount() const { return caseCount_; }
    int variableCount() const { return static_cast<int>(variables_.size()); }

    const Variable& variable(int index0) const { return variables_.at(static_cast<std::size_t>(index0)); }
    Variable& variable(int index0) { return variables_.at(static_cast<std::size_t>(index0)); }

    /// caseCount() cells; a missing cell is NaN, and a cell that equals the variable's missing code counts as
    /// missing.
    std::span<const double> column(int index0) const;
    bool isMissing(int index0, int case0) const {
        return variable(index0).isMissing(column(index0)[static_cast<std::size_t>(case0)]);
    }

    /// Appends a variable; the column holds at least caseCount() cells.
    void addVariable(Variable variable, Column column);

    /// Removes a variable, and the notes that begin with a text; the variables after it move up.
    void removeVariable(int index0, std::string_view noteBeginning);

    /// Finds a variable by its exact name, else by its name without regard to letter case if that is unique,
    /// else by its 1-based number such as "3".
    std::optional<int> find(std::string_view nameOrNumber1) const;

    /// Like find, but throws a DataError that names what was asked for and similar names.
    int require(std::string_view nameOrNumber1) const;

    /// Names similar to a misspelt one, most similar first; may be empty.
    std::vector<std::string> nearestNames(std::string_view name, int most = 3) const;

    bool hasCaseNames() const { return !caseNames_.ends.empty(); }
    std::string_view caseName(int case0) const; ///< empty when the cases have no names
    void setCaseNames(CaseNames names);         ///< one end per case

    /// The reader's notes for the user, one sentence each.
    const std::vector<std::string>& notes() const { return notes_; }
    void addNote(std::string note) { notes_.push_back(std::move(note)); }
    /// @param layout  the note is about how the file was divided into columns and names
    void addNote(std::string note, bool layout);

    /// The notes on the layout, for an error about an unknown variable: each begins with a line feed and the
    /// path.
    std::string layoutRemarks() const;

    /// The layout of the file, as detected or given, in a few words; empty when unknown.
    const std::string& layout() const { return layout_; }
    void setLayout(std::string layout) { layout_ = std::move(layout); }

    /// The layout options that the user gave.
    const ReadSettings& readSettings() const { return readSettings_; }
    void setReadSettings(const ReadSettings& settings) { readSettings_ = settings; }

private:
    std::string path_;
    int caseCount_;
    std::vector<Variable> variables_;
    std::vector<Column> columns_;
    CaseNames caseNames_;
    std::vector<std::string> notes_;
    std::vector<std::string> layoutNotes_; ///< which are also among the notes
    std::string layout_;
    ReadSettings readSettings_;
};

} // namespace korvana
