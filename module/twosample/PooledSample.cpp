#include "module/twosample/PooledSample.h"

#include <algorithm>
#include <tuple>

namespace ozm::survival {

void SortPooled(std::span<PooledObservation> observations) {
    const auto key = [](const PooledObservation& o) {
        return std::tuple{o.time, static_cast<std::int16_t>(-o.status), o.group};
    };
    std::sort(observations.begin(), observations.end(),
              [key](const PooledObservation& a, const PooledObservation& b) { return key(a) < key(b); });
}

} // namespace ozm::survival
