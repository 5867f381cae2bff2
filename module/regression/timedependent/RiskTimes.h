#pragma once

#include "module/regression/cox/OrderedSample.h"

#include <cstddef>
#include <vector>

namespace ozm::survival {

/// A time at which cases of a block leave. All those that do share one risk set: the cases of the block from
/// its first one up to the last one that leaves then. (By the sample's order that is an event, if there is an
/// event at the time at all.)
struct RiskTime {
    double time = 0.0;
    std::size_t first = 0;  ///< of the block
    std::size_t own = 0;    ///< the first case whose time it is
    std::size_t end = 0;    ///< behind the last of them
    std::size_t events = 0; ///< among them

    [[nodiscard]] std::size_t AtRisk() const { return end - first; }
};

/// All of them, in the order of the sample.
std::vector<RiskTime> RiskTimesOf(const OrderedSample& sample);

} // namespace ozm::survival
