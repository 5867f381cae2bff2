#pragma once

#include <cstdint>

namespace ozm::survival {

/// How the preparation of the data, or the estimation, ended. Numbers below 100 are the reading pass's where
/// it has them; the others are those of an estimation.
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
    TooManyParameters = 15, ///< for the uncensored cases
    BadStrata = 16,         ///< codes of the stratification variable
    BadScale = 17,          ///< a covariate's values are too large or too small to compute with
    Singular = 101,
    NotConverged = 102,
    NoLikelihood = 103,
    InvalidOperation = 200,
};

} // namespace ozm::survival
