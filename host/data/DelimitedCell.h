#pragma once

#include "host/data/DateText.h"

#include <optional>
#include <string>
#include <string_view>

namespace korvana {

/// How the cells of a delimited text are written.
struct Dialect {
    char separator = ',';
    bool point = true;                ///< 1.5 is a number
    bool comma = false;               ///< 1,5 is a number
    bool markTold = false;            ///< the user gave the decimal mark
    std::optional<DateOrder> dates{}; ///< none: to be detected
};

enum class CellFault { None, OpenQuote, TextAfterQuote };

/// One cell of the text.
struct RawCell {
    std::string_view text;      ///< without quotes and surrounding blanks
    const char* next = nullptr; ///< at the separator, the line feed or the end of the text
    bool quoted = false;
    CellFault fault = CellFault::None;
};

/// Reads the cell that begins at p < end or p == end. A cell is quoted when its first character other than a
/// blank is a quotation mark; a quotation mark further inside is an ordinary character. Line breaks inside
/// quotes become line feeds, since editors may change them when they save a file. @param scratch  holds the
/// text of a cell that differs from the file until the next call
RawCell readCell(const char* p, const char* end, char separator, std::string& scratch);

enum class CellKind {
    Missing, ///< empty, NA, a lone point, NaN
    Number,
    TooBig,    ///< infinite or beyond the range of a double
    Thousands, ///< a number, except that its thousands are separated
    Date,      ///< the value is its day number
    OpenDate,  ///< a date whose order is not known: the value is packed (DateText.h)
    BadDate,   ///< has the form of a date, but there is no such day or time
    Text
};

struct CellValue {
    CellKind kind = CellKind::Missing;
    double value = 0;
    char mark = 0;   ///< the decimal mark of the number, 0 = none; for a text, the one it would have
    DateText date{}; ///< of the three kinds of dates
};

/// Whether a cell without quotes and surrounding blanks stands for a missing value.
bool isMissingText(std::string_view text);

/// Whether a text consists of leading signs, digits and decimal marks, with at least one mark or several
/// signs, but is no number, date or number with separated thousands: 1.2,3 or --5, but not 3+ or 1-3.
bool isGarbledNumber(std::string_view text);

/// @param text  a cell without quotes and surrounding blanks
CellValue classifyCell(std::string_view text, const Dialect& dialect);

} // namespace korvana
