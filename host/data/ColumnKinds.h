#pragma once

#include "host/data/DelimitedTable.h"
#include "host/data/Variable.h"

namespace korvana {

/** What a column is, from the counts of its cells. Throws DataError for a column of numbers with an infinite
   one, of dates with an impossible one, or of numbers that mix decimal commas and points. */
VariableKind decideKind(const DelimitedTable& table, std::size_t column0, const ColumnTally& tally);

} // namespace korvana
