#pragma once

#include "host/data/DataSet.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace korvana {

/// The column of case weights, looked up once.
struct CaseWeights {
    int variable = -1;               ///< 0-based
    std::span<const double> weights; ///< one per case, as in the data; lives as long as the data set
    int missingCount = 0;            ///< missing weights
    int notPositiveCount = 0;        ///< weights of zero or less
};

/// Resolves a weight variable, given by name or number. Only cases of the mask are counted (1 = counted; an
/// empty mask = all cases). Throws DataError when there is no such variable or it holds texts or dates.
CaseWeights resolveWeights(const DataSet& data, std::string_view nameOrNumber1,
                           std::span<const std::uint8_t> mask = {});

} // namespace korvana
