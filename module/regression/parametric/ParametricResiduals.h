#pragma once

#include "module/regression/parametric/TimeDistributions.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace ozm::survival {

/// Residuals of the cases, in their order.
struct ParametricResiduals {
    std::vector<double> location; ///< b0 + x'b
    std::vector<double> score;    ///< (t or ln t - location) / sigma, of a censored case a lower bound
    std::vector<double> coxSnell; ///< -ln S(t) (Cox & Snell 1968, JRSS B 30:248-275): a sample, censored like
                                  ///< the times, of an exponential distribution with mean 1
    std::vector<double> martingale; ///< 1 for an event, 0 for a censored case, less that
    std::vector<double> deviance;   ///< sign(M) sqrt(-2 (M + d ln(d - M))); not finite for an event at time 0
                                    ///< where the logarithm of time is modelled
};

/// `x` are the covariates, column by column, `stride` apart.
ParametricResiduals ComputeParametricResiduals(const FittedTimes& fitted, std::span<const double> times,
                                               std::span<const std::uint8_t> complete,
                                               std::span<const double> x, std::size_t stride);

} // namespace ozm::survival
