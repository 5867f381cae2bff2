#pragma once

#include "module/ksample/KsState.h"
#include "module/survdata/SharedSettings.h"
#include "module/survdata/Status.h"
#include "support/CAnalysisSupport.h"

#include <cstdint>

namespace ozm {
class CAnalysisDialog;
}

namespace ozm::survival {

/// How a run ended: as a reading pass, and one outcome more.
enum class KsStatus : std::int16_t {
    Success = static_cast<int>(Status::Success),
    NoMemory = static_cast<int>(Status::NoMemory),
    Stopped = static_cast<int>(Status::Stopped),
    TooManyCases = static_cast<int>(Status::TooManyCases),
    TooFewUncensored = static_cast<int>(Status::TooFewUncensored), ///< has a message, but does not arise
    TooFewValid = static_cast<int>(Status::TooFewValid),
    FewerThan3Uncensored = static_cast<int>(Status::NoUncensored), ///< in all groups together
    GroupWithoutUncensored = 12,                                   ///< an empty one included
};

/// The message of a status, 0 for one that has none.
int KsMessage(KsStatus status);

/// The run behind OK of the specification dialog: reads the cases of the shared group codes, sorts them,
/// computes the scores and the test. True when `state.results` stands. Else the message was shown over
/// `window` (none after a stop), and nothing is kept.
bool RunKSamples(CAnalysisSupport& host, SharedSettings& shared, KsState& state, CAnalysisDialog* window);

} // namespace ozm::survival
