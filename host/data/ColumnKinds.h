#pragma once

#include "host/data/DelimitedTable.h"
#include "host/data/Variable.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace korvana {

struct ColumnKind {
    VariableKind kind = VariableKind::Number;
    std::optional<DateOrder> order; ///< the order of the column's packed dates
};

/// Decides what the columns hold, from the counts of their cells in the whole file; all share one decimal
/// mark. Throws DataError for a column of numbers with an infinite one or with separated thousands, for
/// numbers with a decimal mark other than the file's, and for dates that do not exist or can be read in two
/// ways.
/// @param tallies  one per column
/// @param first  the first column that is a variable
/// @param notes  get what the user should know about it
std::vector<ColumnKind> decideKinds(const DelimitedTable& table, std::span<const ColumnTally> tallies,
                                    std::size_t first, std::vector<std::string>& notes);

} // namespace korvana
