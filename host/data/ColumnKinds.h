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
    std::optional<DateOrder> order; ///< in which the packed dates of the column are to be read
};

/// What the columns are, from the counts of their cells in the whole file; one decimal mark holds for all of
/// them. Throws DataError for a column of numbers with an infinite one or with separated thousands, for
/// numbers with another decimal mark than the file's, and for dates that do not exist or can be read in two
/// ways.
/// @param tallies  one per column
/// @param first    the first column that is a variable
/// @param notes    get what the user should know about it
std::vector<ColumnKind> decideKinds(const DelimitedTable& table, std::span<const ColumnTally> tallies,
                                    std::size_t first, std::vector<std::string>& notes);

} // namespace korvana
