#include "module/twosample/ScoreTests.h"

#include "module/survdata/CodeComparison.h"

#include <cmath>
#include <cstddef>

namespace ozm::survival {
namespace {

constexpr double smallestDeviation = 1e-32;

/// z with the continuity correction. It starts from the stored single-precision numbers.
float CorrectForContinuity(const GroupCounts& counts, const ScoreStatistic& stored) {
    const double deviation = std::sqrt(static_cast<double>(stored.variance));
    if (!(deviation > smallestDeviation)) return 0.0F;
    const double sum = static_cast<double>(stored.z) * deviation;
    const double correction = ContinuityCorrection(counts);
    const double shift = sum < 0.0 ? correction : sum > 0.0 ? -correction : 0.0;
    return static_cast<float>((sum + shift) / deviation);
}

} // namespace

double ContinuityCorrection(const GroupCounts& counts) {
    return static_cast<double>(counts.Censored()) / counts.N() < 0.2 ? 1.0 : 0.5;
}

ScoreStatistic ScoreTestStatistic(const PooledSample& sample, std::span<const double> scores) {
    double scoreSum = 0.0;
    double sumOfSquares = 0.0;
    for (std::size_t i = 0; i < scores.size(); ++i) {
        if (sample.observations[i].group == 1) scoreSum += scores[i];
        sumOfSquares += scores[i] * scores[i];
    }
    const double n = sample.counts.N();
    const double variance = sumOfSquares * sample.counts.N1() * sample.counts.N2() / (n * (n - 1.0));
    const double z = GreaterThan(variance, 0.0) ? scoreSum / std::sqrt(variance) : 0.0;
    return {static_cast<float>(scoreSum), static_cast<float>(sumOfSquares), static_cast<float>(variance),
            static_cast<float>(z)};
}

GehanStatistic GehanTest(const PooledSample& sample, std::span<GehanRanks> ranks, std::span<double> scores) {
    const auto observations = sample.observations;
    const std::size_t n = observations.size();
    const auto tied = [&](std::size_t i) { // with the one before
        return observations[i - 1].time == observations[i].time && observations[i - 1].Failed() &&
               observations[i].Failed();
    };
    double failed = 0.0;
    for (std::size_t i = 0; i < n; ++i) {
        if (observations[i].Failed()) failed += 1.0;
        ranks[i].r1 = observations[i].Failed() ? failed : failed + 1.0;
        if (i > 0 && tied(i)) ranks[i].r1 = ranks[i - 1].r1;
    }
    for (std::size_t i = n; i-- > 0;) {
        if (i + 1 < n && tied(i + 1))
            ranks[i].r2 = ranks[i + 1].r2;
        else
            ranks[i].r2 = observations[i].Failed() ? static_cast<double>(n - i) : 1.0;
    }
    for (std::size_t i = 0; i < n; ++i)
        scores[i] = ranks[i].r1 - ranks[i].r2;

    GehanStatistic result{ScoreTestStatistic(sample, scores)};
    result.uncorrected = result.corrected.z;
    result.corrected.z = CorrectForContinuity(sample.counts, result.corrected);
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
