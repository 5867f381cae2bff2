#include "module/twosample/CoxFTest.h"

#include "support/CodeComparison.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace ozm::survival {
namespace {

constexpr int fewestUncensored = 4;

CoxFStatistic Ratio(double sum1, double sum2, const PooledSample& sample) {
    const int uncensored1 = sample.Group(1).uncensored;
    const int uncensored2 = sample.Group(2).uncensored;
    const double mean1 = sum1 / uncensored1;
    const double mean2 = sum2 / uncensored2;
    const auto df1 = static_cast<float>(2 * uncensored1);
    const auto df2 = static_cast<float>(2 * uncensored2);
    const auto t1 = static_cast<float>(sum1);
    const auto t2 = static_cast<float>(sum2);
    if (GreaterThan(mean1, mean2)) return {t1, t2, static_cast<float>(mean1 / mean2), df1, df2};
    if (GreaterThan(mean2, mean1)) return {t1, t2, static_cast<float>(mean2 / mean1), df2, df1};
    return {t1, t2};
}

} // namespace

bool CoxFApplies(const PooledSample& sample) {
    return sample.Total().uncensored >= fewestUncensored && sample.Group(1).uncensored >= 1 &&
           sample.Group(2).uncensored >= 1;
}

CoxFStatistic CoxFTest(const PooledSample& sample, std::span<double> scores) {
    // The sample's order is that of its uncensored times; which group comes first in a tie does not matter,
    // as scores are averaged over it.
    const int observations = sample.Total().All();
    double expected = 0.0;
    std::size_t k = 0;     // uncensored so far
    std::size_t runAt = 0; // where the tied run began
    double runTime = 0.0;
    const auto endRun = [&] {
        double sum = 0.0;
        for (std::size_t i = runAt; i < k; ++i)
            sum += scores[i];
        std::fill(scores.begin() + static_cast<std::ptrdiff_t>(runAt),
                  scores.begin() + static_cast<std::ptrdiff_t>(k), sum / static_cast<double>(k - runAt));
    };
    for (const PooledObservation& o : sample.observations) {
        if (!o.Failed()) continue;
        if (k > 0 && o.time != runTime) {
            endRun();
            runAt = k;
        }
        runTime = o.time;
        expected += 1.0 / (observations - static_cast<int>(k));
        scores[k++] = expected;
    }
    endRun();

    std::array<double, 2> sums{};
    std::size_t next = 0;
    for (const PooledObservation& o : sample.observations)
        if (o.Failed()) sums[o.group == 1 ? 0 : 1] += scores[next++];
    if (sample.Total().censored > 0) {
        const double last = expected + 1.0 / sample.Total().censored; // N - r observations are censored
        sums[0] += last * sample.Group(1).censored;
        sums[1] += last * sample.Group(2).censored;
    }
    return Ratio(sums[0], sums[1], sample);
}

} // namespace ozm::survival
