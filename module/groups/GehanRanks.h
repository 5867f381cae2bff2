#pragma once

#include "module/groups/PooledSample.h"

#include <span>

namespace ozm::survival {

/// Counts of one observation in Mantel's computation of Gehan's scores.
struct GehanRanks {
    double r1 = 0.0; ///< 1 + observations that are certainly shorter
    double r2 = 0.0; ///< 1 + observations that are certainly longer
};

/// Gehan's scores (Gehan 1965, Biometrika 52:203-223) in Mantel's computation (1967, Biometrics 23:65-78):
/// the score of an observation is how many are certainly shorter less how many are certainly longer, r1 - r2.
/// An observation censored at a time of failure is longer; tied failures are neither. They need no groups.
/// `ranks` and `scores` are as long as the sample.
void ComputeGehanScores(std::span<const PooledObservation> observations, std::span<GehanRanks> ranks,
                        std::span<double> scores);

/// How much the continuity correction subtracts from the magnitude of a sum of scores: 1 where fewer than 20
/// % of all observations are censored, else 0.5.
double ContinuityCorrection(const GroupCount& all);

} // namespace ozm::survival
