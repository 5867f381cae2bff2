#pragma once

#include "module/groups/PooledSample.h"

#include <array>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

namespace ozm::survival {

/// What the failures at a time t count in a log-rank test of k samples.
enum class LogRankWeight : std::uint8_t {
    LogRank,    ///< 1 (Mantel 1966; Peto & Peto 1972)
    TaroneWare, ///< the root of the number at risk (Tarone & Ware 1977, Biometrika 64:156-160)
    PetoPeto,   ///< the Kaplan-Meier estimate of all groups just before t (G-rho with rho = 1, Harrington &
                ///< Fleming 1982, Biometrika 69:553-566)
};
inline constexpr std::array logRankWeights{LogRankWeight::LogRank, LogRankWeight::TaroneWare,
                                           LogRankWeight::PetoPeto};

/// Observed and expected failures by group, each weighted, and the covariance of their differences. With d of
/// n at risk failing at a time, n(g) of them at risk and d(g) failing in group g, and the weight w:
///
///   O(g) = sum of w d(g),  E(g) = sum of w d n(g) / n
///   V(g,h) = sum of w^2 d (n - d) / (n - 1) (n(g) / n) ((g = h) - n(h) / n)     (hypergeometric)
struct WeightedLogRank {
    std::vector<double> observed;
    std::vector<double> expected;
    std::vector<double> covariance; ///< k rows of k

    [[nodiscard]] std::size_t Groups() const { return observed.size(); }
};

/// In one pass over the sorted sample: O(N k).
WeightedLogRank ComputeWeightedLogRank(const PooledSample& sample, LogRankWeight weight);

/// A chi-square statistic. Without degrees of freedom there is none: it and p are NaN.
struct ChiSquareTest {
    double chiSquare = std::numeric_limits<double>::quiet_NaN();
    int df = 0;
    double p = std::numeric_limits<double>::quiet_NaN();
};

/// (O - E)' V^- (O - E), with as many degrees of freedom as V has rank: k - 1, less one for each further
/// group of which nobody is at risk at any failure.
ChiSquareTest TestOfDifferences(const WeightedLogRank& sums);

/// The test for trend (Tarone 1975, Biometrika 62:679-682) over one score s per group:
/// (s' (O - E))^2 / (s' V s), one degree of freedom.
ChiSquareTest TestOfTrend(const WeightedLogRank& sums, std::span<const double> scores);

/// The log-rank test of two of the groups.
struct PairTest {
    int first = 0; ///< groups, from 0
    int second = 0;
    ChiSquareTest test;
    double adjusted =
        std::numeric_limits<double>::quiet_NaN(); ///< p after Holm 1979, Scand. J. Statist. 6:65-70
};

/// All pairs (1,2), (1,3), ..., (2,3), ...
std::vector<PairTest> ComparePairs(const PooledSample& sample);

} // namespace ozm::survival
