#pragma once

#include "host/data/ColumnTally.h"
#include "host/data/DelimitedCell.h"

#include <cstdint>
#include <string_view>

namespace korvana {

/// Counts a cell in the tally of its column. Returns its number, its day number, a packed date when the order
/// is not known, or NaN for a missing cell and for what is neither.
/// @param text  the cell without quotes and surrounding blanks
double tallyCell(std::string_view text, std::int64_t line, const Dialect& dialect, ColumnTally& tally);

/// Counts the decimal mark of a number, which may turn out not to be that of the file.
/// @param sure  the mark cannot separate thousands
void tallyMark(char mark, bool sure, std::int64_t line, std::string_view text, ColumnTally& tally);

} // namespace korvana
