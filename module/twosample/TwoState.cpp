#include "module/twosample/TwoState.h"

#include <algorithm>

namespace ozm::survival {

bool GroupLists::Obtain(CAnalysisSupport& host, std::int32_t cases, bool weighted) {
    Release();
    const bool fixed = cases <= fixedCapacity && !weighted;
    capacity_ = fixed ? fixedCapacity : weighted ? largestCapacity : std::min(cases, largestCapacity);
    for (std::size_t k = 0; k < lists_.size(); ++k) {
        if (!fixed && !host_[k].Allocate(host, static_cast<std::size_t>(capacity_))) {
            Release();
            return false;
        }
        lists_[k].times = fixed ? std::span<double>{fixed_[k]} : host_[k].Span();
    }
    return true;
}

void GroupLists::Release() {
    for (std::size_t k = 0; k < lists_.size(); ++k) {
        lists_[k].times = {};
        lists_[k].count = 0;
        host_[k].Release();
    }
    capacity_ = 0;
}

bool GroupLists::Append(const Observation& observation) {
    List& list = lists_[(observation.group == 1 ? 0U : 2U) + (observation.complete ? 0U : 1U)];
    if (list.count == list.times.size()) return false;
    list.times[list.count++] = observation.time;
    return true;
}

GroupCounts GroupLists::Counts() const {
    const auto count = [this](std::size_t k) { return static_cast<std::int16_t>(lists_[k].count); };
    return {count(0), count(1), count(2), count(3)};
}

std::size_t GroupLists::Size() const {
    return static_cast<std::size_t>(Counts().N());
}

void GroupLists::Pool(std::span<PooledObservation> pooled) const {
    std::size_t next = 0;
    for (const List& list : lists_)
        for (const double time : list.times.first(list.count))
            pooled[next++] = {time, static_cast<std::int16_t>(list.complete ? 1 : 0), list.group};
}

bool TwoResults::Obtain(CAnalysisSupport& host, std::size_t observations) {
    Release();
    if (observations <= fixed_.size()) {
        observations_ = std::span{fixed_}.first(observations);
        return true;
    }
    if (!host_.Allocate(host, observations)) return false;
    observations_ = host_.Span();
    return true;
}

void TwoResults::Release() {
    observations_ = {};
    host_.Release();
    counts = {};
}

} // namespace ozm::survival
