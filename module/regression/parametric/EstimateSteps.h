#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace ozm::survival {

/// A step of the product-limit estimate of censored values, times or residuals, and of Nelson's estimate of
/// their cumulative hazard (Nelson 1972, Technometrics 14:945-966).
struct EstimateStep {
    double at = 0.0;
    std::size_t atRisk = 0;
    std::size_t events = 0;
    double before = 1.0;   ///< product-limit estimate below the value
    double survival = 1.0; ///< and from it on
    double error = 0.0;    ///< its standard error by Greenwood's formula
    double hazard = 0.0;   ///< the sum of events / at risk
};

/// A step per distinct value that an uncensored case has, ascending; values may be in any order. A value that
/// is NaN counts as none.
std::vector<EstimateStep> EstimateSteps(std::span<const double> values,
                                        std::span<const std::uint8_t> complete);

/// The last step at or before a value; nullptr before the first.
const EstimateStep* StepAt(std::span<const EstimateStep> steps, double value);

} // namespace ozm::survival
