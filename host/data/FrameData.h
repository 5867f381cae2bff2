#pragma once

#include "host/data/ColumnTally.h"
#include "host/data/DataSet.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace korvana {

enum class CellType : std::uint8_t {
    Int8,
    Int16,
    Int32,
    Int64,
    UInt8, ///< also of truth values
    UInt16,
    UInt32,
    UInt64,
    Float32,
    Float64
};

/// Cells of one type in memory of somebody else, at equal distances; the owner keeps them where they are.
struct CellBlock {
    CellType type = CellType::Float64;
    const void* first = nullptr;
    std::ptrdiff_t stride = 0; ///< bytes from one cell to the next; may be negative
    std::shared_ptr<const void> owner{};
};

/// A column of texts, each kept once.
struct FrameTexts {
    std::vector<std::int32_t> places; ///< in `texts`, one per case; -1 = missing
    std::vector<std::string> texts;   ///< UTF-8; some may be the same, or used by no case
};

/// Makes a data set of columns that a program has in memory. The data are what a file with the same values
/// would be: a column of texts may turn out to hold numbers or dates, and so on. Numbers of eight bytes
/// without gaps are borrowed, and not copied; everything else is converted in one pass. Errors and notes call
/// a case a line, counted from 1.
class FrameData {
public:
    /// @param name  of the data, in messages and results
    /// @param reading  decimal mark and order of dates, for texts
    /// Throws DataError for more cases than there may be, or none.
    FrameData(std::string name, std::int64_t cases, const ReadSettings& reading = {});

    // Each appends a variable, and throws DataError for values that cannot be taken. A name may be empty.

    /// Missing numbers are NaN.
    void addNumbers(std::string name, const CellBlock& cells);
    /// 0 and 1, which are labelled False and True.
    void addTruths(std::string name, const CellBlock& cells);
    /// Times since 1970, whole numbers of eight bytes; the least one is missing. Dates count whole days.
    void addDates(std::string name, const CellBlock& times, std::int64_t timesPerDay);
    /// Lengths of time, in the same form: numbers of days.
    void addDurations(std::string name, const CellBlock& times, std::int64_t timesPerDay);
    void addTexts(std::string name, FrameTexts texts);
    /// A variable that nobody is going to use: it has a name and a number, and its cells are not looked at.
    void addUnread(std::string name);

    /// The data set; nothing can be added afterwards.
    DataSet finish();

private:
    struct Part {
        Column column{};
        FrameTexts texts{};
        ColumnTally tally{};
        std::vector<double> values{};      ///< of the texts
        std::vector<std::int64_t> first{}; ///< the first line of each
        bool isText = false;
        bool isTruth = false;
    };

    [[nodiscard]] std::size_t rows() const { return static_cast<std::size_t>(cases_); }
    Part& add(std::string name);
    void tallyTexts(Part& part) const;
    void code(Part& part, Variable& variable) const;

    std::string name_;
    std::int64_t cases_;
    ReadSettings reading_;
    std::vector<std::string> names_;
    std::vector<Part> parts_;
    std::shared_ptr<const double> zeros_; ///< of variables that are not read
};

} // namespace korvana
