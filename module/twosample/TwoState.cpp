#include "module/twosample/TwoState.h"

#include <algorithm>

namespace ozm::survival {

std::int32_t GroupLists::CapacityFor(std::int32_t cases, bool weighted) {
    if (cases <= fixedCapacity && !weighted) return fixedCapacity;
    return weighted ? largestCapacity : std::min(cases, largestCapacity);
}

bool GroupLists::Obtain(CAnalysisSupport& host, std::int32_t capacity) {
    return std::all_of(lists_.begin(), lists_.end(), [&](List& list) {
        return list.times.Obtain(host, static_cast<std::size_t>(capacity));
    });
}

bool GroupLists::Append(const Observation& observation) {
    List& list = lists_[(observation.group == 1 ? 0U : 2U) + (observation.complete ? 0U : 1U)];
    if (list.count == list.times.Size()) return false;
    list.times[list.count++] = observation.time;
    return true;
}

std::array<GroupCount, 2> GroupLists::Counts() const {
    const auto count = [this](std::size_t k) { return static_cast<std::int32_t>(lists_[k].count); };
    return {{{count(0), count(1)}, {count(2), count(3)}}};
}

void GroupLists::Pool(std::span<PooledObservation> pooled) const {
    std::size_t next = 0;
    for (std::size_t k = 0; k < lists_.size(); ++k) {
        const auto status = static_cast<std::int16_t>(k % 2 == 0 ? 1 : 0);
        const auto group = static_cast<std::int16_t>(k < 2 ? 1 : 2);
        for (const double time : lists_[k].times.First(lists_[k].count))
            pooled[next++] = {time, status, group};
    }
}

} // namespace ozm::survival
