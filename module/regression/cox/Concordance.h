#pragma once

#include "module/regression/cox/OrderedSample.h"

#include <span>

namespace ozm::survival {

/// How well a predictor of risk orders the times of death (Harrell, Lee & Mark 1996, Statistics in Medicine
/// 15:361-387).
struct Concordance {
    // Pairs of cases of a stratum of which one is known to have died before the other: a case censored at the
    // time of a death counts as later, two deaths at one time are no pair.
    double concordant = 0.0; ///< the one who died had the higher risk
    double discordant = 0.0;
    double tied = 0.0;  ///< equal risks
    double value = 0.0; ///< (concordant + tied / 2) / all; NaN without pairs
    double error = 0.0; ///< standard error by the infinitesimal jackknife

    [[nodiscard]] double Pairs() const { return concordant + discordant + tied; }
};

/// Of all cases, in time proportional to n log n.
Concordance ComputeConcordance(const OrderedSample& sample, std::span<const double> predictors);

} // namespace ozm::survival
