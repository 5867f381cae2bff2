#include "module/regression/timedependent/RiskTimes.h"

namespace ozm::survival {

std::vector<RiskTime> RiskTimesOf(const OrderedSample& sample) {
    std::vector<RiskTime> times;
    std::size_t first = 0;
    for (const std::int32_t size : sample.blocks) {
        const std::size_t blockEnd = first + static_cast<std::size_t>(size);
        for (std::size_t i = first; i < blockEnd;) {
            RiskTime at{.time = sample.times[i], .first = first, .own = i};
            for (; i < blockEnd && sample.times[i] == at.time; ++i)
                at.events += sample.complete[i];
            at.end = i;
            times.push_back(at);
        }
        first = blockEnd;
    }
    return times;
}

} // namespace ozm::survival
