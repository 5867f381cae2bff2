#pragma once

#include "module/survdata/HostArray.h"
#include "module/survdata/OutputResult.h"
#include "module/survdata/StopTest.h"
#include "support/CAnalysisSupport.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace ozm::survival {

/// How a column of a results spreadsheet is named.
struct ColumnName {
    std::string_view
        id; ///< by which programs find it: lowerCamelCase words without an abbreviation ("standardError")
    int heading1 = 0; ///< numbers of the string table, 0: none
    int heading2 = 0;
    std::string inFull{}; ///< both headings without the abbreviations that keep them short; empty where there
                          ///< are none
    std::string named{};  ///< in place of heading1: a name that the data have, or that the numbers go into
};

/// A results spreadsheet under construction: title, notes and columns first, then room for the rows, then the
/// cells. Cells are in memory of the host; unfilled cells are empty, or 0 in columns of whole numbers.
class ResultTable {
public:
    /// The place of a column, by the type of its cells.
    struct Numbers {
        std::size_t place;
    }; ///< doubles, shown in a format; NaN: an empty cell
    struct Integers {
        std::size_t place;
    }; ///< 32-bit whole numbers without empty cells, for long tables
    struct Marks {
        std::size_t place;
    }; ///< one of a few texts, by its position among them
    struct Texts {
        std::size_t place;
    };

    explicit ResultTable(std::string title) { sheet_.title = std::move(title); }

    void AddNote(std::string note) { sheet_.notes.push_back(std::move(note)); }
    /// A line below the table.
    void AddFootnote(std::string note) { sheet_.footnotes.push_back(std::move(note)); }
    /// Marks a table whose values the text report already has.
    void RepeatsReport() { sheet_.repeatsReport = true; }
    /// Marks a table that readers want first, however long it is.
    void IsEssential() { sheet_.essential = true; }

    Numbers AddNumbers(const ColumnName& name, CellFormat format);
    Integers AddIntegers(const ColumnName& name);
    /// The texts outlive the table.
    Marks AddMarks(const ColumnName& name, std::span<const std::string_view> texts);
    Texts AddTexts(const ColumnName& name);

    /// Makes room for the rows of all columns. False when the host refused it.
    [[nodiscard]] bool AddRows(CAnalysisSupport& host, std::size_t rows);
    [[nodiscard]] std::size_t Rows() const { return rows_; }
    void NameRow(std::string heading) { sheet_.rowHeadings.push_back(std::move(heading)); }

    /// The cells of a column, one per row.
    std::span<double> operator[](Numbers column) { return Cells<HostArray<double>>(column.place).Span(); }
    std::span<std::int32_t> operator[](Integers column) {
        return Cells<HostArray<std::int32_t>>(column.place).Span();
    }
    std::span<std::uint8_t> operator[](Marks column) { return Cells<MarkCells>(column.place).index.Span(); }
    std::span<std::string> operator[](Texts column) { return Cells<std::vector<std::string>>(column.place); }

    /// To be called before each row is filled: whether the user wants to stop. Asks the host only now and
    /// then.
    [[nodiscard]] static bool StopsAt(CAnalysisSupport& host, std::size_t row) {
        constexpr std::size_t rowsPerPoll = std::size_t{1} << 14;
        return row % rowsPerPoll == 0 && StopRequested(host);
    }

    /// Hands the table to the host. Its cells are gone after this.
    [[nodiscard]] OutputResult Write(CAnalysisSupport& host);

private:
    struct MarkCells {
        HostArray<std::uint8_t> index;
        std::span<const std::string_view> texts;
    };
    using Column =
        std::variant<HostArray<double>, HostArray<std::int32_t>, MarkCells, std::vector<std::string>>;

    template <class Kind>
    Kind& Cells(std::size_t place) {
        return std::get<Kind>(columns_[place]);
    }
    std::size_t Add(const ColumnName& name, CellFormat format, Column cells);

    SheetSpec sheet_;
    std::vector<Column> columns_; ///< as many as the sheet has
    std::size_t rows_ = 0;
};

} // namespace ozm::survival
