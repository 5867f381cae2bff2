#pragma once

#include <cstdint>

namespace ozm::survival {

/// How the preparation of the data ended; the numbers are the reading pass's where it has them.
enum class RegressionStatus : std::int16_t {
    Success = 0,
    NoMemory = -1,
    Stopped = 4,
    TooManyCases = 5,
    TooFewUncensored = 7,
    TooFewValid = 10,
    NoUncensored = 11,
    FewValues = 12,         ///< of a covariate
    ConstantCovariate = 13, ///< a covariate has one value only
    ConstantTimes = 14,
    BadStrata = 16, ///< codes of the stratification variable
    BadExpression = 18,
    BadScale = 17, ///< a covariate's values are too large or too small to compute with
};

} // namespace ozm::survival
