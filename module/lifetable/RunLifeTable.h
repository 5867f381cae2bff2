#pragma once

#include "module/lifetable/LifeState.h"
#include "module/lifetable/LifeStatus.h"
#include "module/survdata/SharedSettings.h"
#include "support/CAnalysisSupport.h"

#include <cstdint>

namespace ozm {
class CAnalysisDialog;
}

namespace ozm::survival {

/// Room for the observations of a run with raw data: fixed for data of up to `fixedCapacity` cases; else one
/// entry per case, or `weightedCapacity` with case weights, whose copies count.
struct LifeArrays {
    static constexpr std::int32_t fixedCapacity = 8000;
    static constexpr std::int32_t weightedCapacity = 250'000;

    static std::int32_t CapacityFor(std::int32_t cases, bool weighted);
};

/// The message of a status, 0 for one that has none.
int LifeMessage(LifeStatus status);

/// The run behind OK of both specification dialogs: reads observations and counts them into intervals, or
/// reads a table, by the shared input data type; computes the life table and fits the distributions. A step
/// size with too few or too many intervals is refused with a warning, and the settings then go by the number
/// of intervals. True when `state.results` stands. Else the message was shown over `window` (none after a
/// stop), and nothing is kept.
bool RunLifeTable(CAnalysisSupport& host, SharedSettings& shared, LifeState& state, CAnalysisDialog* window);

} // namespace ozm::survival
