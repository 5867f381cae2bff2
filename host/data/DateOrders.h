#pragma once

#include "host/data/ColumnKinds.h"
#include "host/data/ColumnTally.h"
#include "host/data/DelimitedTable.h"

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace korvana {

/// "day, month, year" and so on.
std::string_view nameOf(DateOrder order);

/// The value of the option that asks for the order: dmy, mdy or ymd.
std::string_view optionOf(DateOrder order);

/// Decides in which order the columns of dates are read. Columns that fit one order are read in it; those
/// that fit several follow them, if they agree. Short numbers that fit no order become texts. Throws
/// DataError for a column that no order fits, AmbiguousDates for one that is left undecided.
/// @param first  the first column that is a variable
void decideOrders(const DelimitedTable& table, std::span<const ColumnTally> tallies, std::size_t first,
                  std::span<ColumnKind> kinds);

/// Adds a note if the file's dates are written in two orders, which is rare.
void noteTwoOrders(const DelimitedTable& table, std::span<const ColumnKind> kinds,
                   std::vector<std::string>& notes);

} // namespace korvana
