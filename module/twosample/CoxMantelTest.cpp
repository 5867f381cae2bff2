#include "module/twosample/CoxMantelTest.h"

#include <cmath>
#include <cstddef>

namespace ozm::survival {

CoxMantelStatistic CoxMantelTest(const PooledSample& sample, const PooledFailures& failures,
                                 std::span<Group2AtRisk> rows) {
    int left = sample.Group(2).All();
    std::size_t passed = 0;
    double expected = 0.0;
    double information = 0.0;
    for (std::size_t j = 0; j < failures.times.size(); ++j) {
        const FailureTime& at = failures.times[j];
        for (; sample.observations[passed].time < at.time; ++passed)
            if (sample.observations[passed].group == 2) --left;
        const double share = static_cast<double>(left) / at.atRisk;
        rows[j] = {left, share};
        const double d = at.failures;
        const double n = at.atRisk;
        expected += d * share;
        if (at.atRisk > 1) information += d * (n - d) * share * (1.0 - share) / (n - 1.0);
    }
    const double excess = sample.Group(2).uncensored - expected;
    const double c = information > 0.0 ? excess / std::sqrt(information) : 0.0;
    return {static_cast<float>(information), static_cast<float>(excess), static_cast<float>(c)};
}

} // namespace ozm::survival
