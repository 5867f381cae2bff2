#pragma once

#include <cstdint>
#include <span>

namespace ozm::survival {

/// What is known of a covariate.
struct CovariateSummary {
    double mean = 0.0;
    double deviation = 0.0;   ///< standard deviation, with n - 1
    std::int32_t values = 0;  ///< cases with a value
    std::int32_t missing = 0; ///< valid cases without one, which the mean stands for, or which are left out
};

/// Mean and standard deviation of the values that are not NaN, without cancellation: about the first one.
CovariateSummary SummaryOf(std::span<const double> column);

} // namespace ozm::survival
