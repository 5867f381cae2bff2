#pragma once

#include "module/groups/GehanRanks.h"
#include "module/twosample/PooledFailures.h"

#include <span>

namespace ozm::survival {

/// The statistic of a test by scores, as it is stored: in single precision.
struct ScoreStatistic {
    float scoreSum = 0.0F;     ///< WW: the scores of group 1 added up
    float sumOfSquares = 0.0F; ///< Sum: of all scores
    float variance = 0.0F;     ///< Var
    float z = 0.0F;            ///< referred to the standard normal distribution
};

/// The permutation statistic of one score u(i) per observation: the sum over group 1, standardised under the
/// assumption that every division into groups of these sizes is equally likely and the scores add up to 0,
///
///   WW = sum of u over group 1,  Sum = sum of all u^2,  Var = Sum N1 N2 / (N (N - 1)),  z = WW / sqrt(Var)
///
/// and z = 0 where Var is 0. This variance differs from the hypergeometric one (Mantel 1966) of other
/// programs.
ScoreStatistic ScoreTestStatistic(const PooledSample& sample, std::span<const double> scores);

struct GehanStatistic {
    ScoreStatistic corrected; ///< its z has the continuity correction
    float uncorrected = 0.0F; ///< z before it
};

/// Gehan's generalised Wilcoxon test: the permutation statistic of his scores. |WW| is reduced by
/// `ContinuityCorrection`. The sum is positive when group 1 lives longer. `ranks` and `scores` are as long as
/// the sample.
GehanStatistic GehanTest(const PooledSample& sample, std::span<GehanRanks> ranks, std::span<double> scores);

/// The log-rank test by scores (Peto & Peto 1972, J. R. Statist. Soc. A 135:185-207): with the cumulative
/// hazard e(j) = q(1) + ... + q(j), 1 - e(j) for a failure at t(j) and -e(j) for an observation censored
/// after it. The sum is negative when group 1 lives longer. `scores` is as long as the sample.
ScoreStatistic LogRankTest(const PooledSample& sample, const PooledFailures& failures,
                           std::span<double> scores);

/// Peto & Peto's generalised Wilcoxon test (same source): S(j) + S(j+1) - 1 for a failure at t(j), S(j+1) - 1
/// for an observation censored after it. Without a censored observation the test is Gehan's: call that. The
/// sum is negative when group 1 lives longer.
ScoreStatistic PetoPetoTest(const PooledSample& sample, const PooledFailures& failures,
                            std::span<double> scores);

} // namespace ozm::survival
