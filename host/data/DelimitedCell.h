#pragma once

#include <string>
#include <string_view>

namespace korvana {

/** How the cells of a delimited text are written. */
struct Dialect {
    char separator = ',';
    bool point = true;  ///< 1.5 is a number
    bool comma = false; ///< 1,5 is a number
};

enum class CellFault { None, OpenQuote, TextAfterQuote };

/** One cell as it stands in the text. */
struct RawCell {
    std::string_view text;      ///< without quotes and surrounding blanks
    const char* next = nullptr; ///< at the separator, the line feed or the end of the text
    bool quoted = false;
    CellFault fault = CellFault::None;
};

/** Reads the cell that begins at p < end or p == end. A cell is quoted when its first character besides
   blanks is a quotation mark; a quotation mark further inside is an ordinary character.
    @param scratch  holds the text of a cell with doubled quotation marks until the next call */
RawCell readCell(const char* p, const char* end, char separator, std::string& scratch);

enum class CellKind {
    Missing, ///< empty, NA, a lone point, NaN
    Number,
    TooBig,  ///< infinite or beyond the range of a double
    Date,    ///< an ISO date; the value is its day number
    BadDate, ///< has the form of a date, but there is no such day
    Text
};

struct CellValue {
    CellKind kind = CellKind::Missing;
    double value = 0;
    char mark = 0; ///< the decimal mark that the number has, 0 = none
};

/** Whether a cell without quotes and surrounding blanks stands for a missing value. */
bool isMissingText(std::string_view text);

/** @param text  a cell without quotes and surrounding blanks */
CellValue classifyCell(std::string_view text, const Dialect& dialect);

} // namespace korvana
