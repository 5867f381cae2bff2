#pragma once

#include "host/data/DataSet.h"

#include <optional>
#include <string_view>

namespace korvana {

/// The value that a user means by a text: a value label of the variable (exact, then without regard to letter
/// case if unique), a number, or for a date variable an ISO date. A label wins over a number. Surrounding
/// blanks are ignored.
std::optional<double> resolveCode(const DataSet& data, int variable, std::string_view text);

} // namespace korvana
