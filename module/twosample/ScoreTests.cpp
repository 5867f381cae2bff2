#include "module/twosample/ScoreTests.h"

#include "support/CodeComparison.h"

#include <cmath>
#include <cstddef>

namespace ozm::survival {
namespace {

constexpr double smallestDeviation = 1e-32;

/// z with the continuity correction. It starts from the stored single-precision numbers.
float CorrectForContinuity(const GroupCount& all, const ScoreStatistic& stored) {
    const double deviation = std::sqrt(static_cast<double>(stored.variance));
    if (!(deviation > smallestDeviation)) return 0.0F;
    const double sum = static_cast<double>(stored.z) * deviation;
    const double correction = ContinuityCorrection(all);
    const double shift = sum < 0.0 ? correction : sum > 0.0 ? -correction : 0.0;
    return static_cast<float>((sum + shift) / deviation);
}

} // namespace

ScoreStatistic ScoreTestStatistic(const PooledSample& sample, std::span<const double> scores) {
    double scoreSum = 0.0;
    double sumOfSquares = 0.0;
    for (std::size_t i = 0; i < scores.size(); ++i) {
        if (sample.observations[i].group == 1) scoreSum += scores[i];
        sumOfSquares += scores[i] * scores[i];
    }
    const double n = sample.Total().All();
    const double variance = sumOfSquares * sample.Group(1).All() * sample.Group(2).All() / (n * (n - 1.0));
    const double z = GreaterThan(variance, 0.0) ? scoreSum / std::sqrt(variance) : 0.0;
    return {static_cast<float>(scoreSum), static_cast<float>(sumOfSquares), static_cast<float>(variance),
            static_cast<float>(z)};
}

GehanStatistic GehanTest(const PooledSample& sample, std::span<GehanRanks> ranks, std::span<double> scores) {
    ComputeGehanScores(sample.observations, ranks, scores);
    GehanStatistic result{ScoreTestStatistic(sample, scores)};
    result.uncorrected = result.corrected.z;
    result.corrected.z = CorrectForContinuity(sample.Total(), result.corrected);
    return result;
}

ScoreStatistic LogRankTest(const PooledSample& sample, const PooledFailures& failures,
                           std::span<double> scores) {
    double cumulativeHazard = 0.0;
    std::size_t added = 0;
    const auto hazardAt = [&](std::size_t j) {
        for (; added <= j; ++added)
            cumulativeHazard += failures.times[added].hazard;
        return cumulativeHazard;
    };
    ScoreByFailureTime(
        sample, failures, scores, [&](std::size_t j) { return 1.0 - hazardAt(j); },
        [&](std::size_t j) { return -hazardAt(j); });
    return ScoreTestStatistic(sample, scores);
}

ScoreStatistic PetoPetoTest(const PooledSample& sample, const PooledFailures& failures,
                            std::span<double> scores) {
    const auto after = [&](std::size_t j) {
        return j + 1 < failures.times.size() ? failures.times[j + 1].survival : failures.survivalAfter;
    };
    ScoreByFailureTime(
        sample, failures, scores, [&](std::size_t j) { return failures.times[j].survival + after(j) - 1.0; },
        [&](std::size_t j) { return after(j) - 1.0; });
    return ScoreTestStatistic(sample, scores);
}

} // namespace ozm::survival
