#pragma once

#include "host/data/DataSet.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace korvana {

/** Which cases satisfy a condition. */
struct CaseSelection {
    std::vector<std::uint8_t> mask; ///< one per case, 1 = selected
    int selectedCount = 0;
    int missingCount = 0; ///< cases left out because a value that the condition needs is missing
};

/** Evaluates a condition (see Expression for the syntax) for every case: selected are the cases for which it
   is not zero. A case with a missing value in a variable that the condition refers to is not selected, unless
   the condition tests that variable by missing(x). Throws ExpressionError for a condition that cannot be
   understood and DataError, naming the case, when it has no finite value for a case without missing values.
 */
CaseSelection selectCases(const DataSet& data, std::string_view condition);

} // namespace korvana
