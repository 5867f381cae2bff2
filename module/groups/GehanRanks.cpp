#include "module/groups/GehanRanks.h"

#include <cstddef>

namespace ozm::survival {

double ContinuityCorrection(const GroupCount& all) {
    return static_cast<double>(all.censored) / all.All() < 0.2 ? 1.0 : 0.5;
}

void ComputeGehanScores(std::span<const PooledObservation> observations, std::span<GehanRanks> ranks,
                        std::span<double> scores) {
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
}

} // namespace ozm::survival
