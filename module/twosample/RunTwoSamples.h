#pragma once

#include "module/survdata/SharedSettings.h"
#include "module/survdata/Status.h"
#include "module/twosample/TwoState.h"
#include "support/CAnalysisSupport.h"

#include <span>

namespace ozm {
class CAnalysisDialog;
}

namespace ozm::survival {

/// The run behind OK of the specification dialog: obtains the lists, reads the cases, checks the counts,
/// pools and sorts. True when `state.results` holds the sample. Else the message was shown over `window`
/// (none after a stop), and nothing is kept.
bool RunTwoSamples(CAnalysisSupport& host, SharedSettings& shared, TwoState& state, CAnalysisDialog* window);

/// Whether the counts allow a comparison: two uncensored observations in all, and one observation in each
/// group; else NoUncensored.
Status CheckGroups(std::span<const GroupCount, 2> groups);

/// The message of a status, 0 for one that has none.
int TwoMessage(Status status);

} // namespace ozm::survival
