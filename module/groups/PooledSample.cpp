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

bool PooledBefore(const PooledObservation& one, const PooledObservation& other) {
    const auto key = [](const PooledObservation& o) {
        return std::tuple{o.time, static_cast<std::int16_t>(-o.status), o.group};
    };
    return key(one) < key(other);
}

void SortPooled(std::span<PooledObservation> observations) {
    std::sort(observations.begin(), observations.end(), PooledBefore);
}

} // namespace ozm::survival
