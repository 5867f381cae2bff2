#pragma once

#include "module/groups/PooledSample.h"

#include <cstdint>
#include <span>

namespace ozm::survival {

/// The comparison of k samples by Gehan's scores (Gehan 1965, Biometrika 52:203-223, in the computation of
/// Mantel 1967, Biometrics 23:65-78). Probabilities are proportions; those of the approximations have floors.
struct KSampleStatistic {
    int groups = 0;
    /// Two groups: Z = (S + c) / SD, S the sum of scores of group 1. More: chi-square.
    double statistic = 0.0;
    std::int32_t df = 0;             ///< of chi-square: groups less one; 0 for two groups
    double standardDeviation = 0.0;  ///< of S; two groups
    double oneTailed = 0.0;          ///< two groups: 0.001 beyond |Z| = 3.1
    double twoTailed = 0.0;          ///< two groups: 0.002 beyond |Z| = 3.1
    double chiSquareProbability = 0; ///< more than two: 0.00001 below 0.000005
    /// Of the same statistic, without floors and approximations, to double precision; two-sided for Z.
    double exactProbability = 0.0;

    [[nodiscard]] bool TwoGroups() const { return groups == 2; }
    /// The probability that is printed beside the statistic.
    [[nodiscard]] double Printed() const { return TwoGroups() ? twoTailed : chiSquareProbability; }
};

/// The test for two groups,
///
///   SD = sqrt(N1 N2 sum of score^2 / (N (N - 1))),  Z = (S + c) / SD
///
/// where c is 0 for S = 0, else `ContinuityCorrection` towards 0, and Z = 0 where SD is 0; for more groups
/// with T(g) the sums of scores
///
///   chi-square = (N - 1) (sum of T(g)^2 / n(g)) / (sum of score^2)
///
/// and 0 where the scores are. `scores` is as long as the sample, `sums` as its groups.
KSampleStatistic ComputeKSampleTest(const PooledSample& sample, std::span<const double> scores,
                                    std::span<const double> sums);

/// The sums of scores of the groups; `sums` is as long as the groups.
void AddUpScores(const PooledSample& sample, std::span<const double> scores, std::span<double> sums);

} // namespace ozm::survival
