#include "module/groups/PooledSample.h"

#include <algorithm>
#include <tuple>

namespace ozm::survival {

GroupCount PooledSample::TotalOf(std::span<const GroupCount> groups) {
    GroupCount total;
    for (const GroupCount& group : groups) {
        total.uncensored += group.uncensored;
        total.censored += group.censored;
    }
    return total;
}

void SortPooled(std::span<PooledObservation> observations) {
    const auto key = [](const PooledObservation& o) {
        return std::tuple{o.time, static_cast<std::int16_t>(-o.status), o.group};
    };
    std::sort(observations.begin(), observations.end(),
              [key](const PooledObservation& a, const PooledObservation& b) { return key(a) < key(b); });
}

} // namespace ozm::survival
