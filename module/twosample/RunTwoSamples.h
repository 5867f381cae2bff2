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

/// The run that the specification dialog's OK starts: obtains the lists, reads the cases, checks the counts,
/// pools and sorts. True when `state.results` holds the sample. Else a message was shown over `window` (none
/// after a stop), and nothing is kept.
bool RunTwoSamples(CAnalysisSupport& host, SharedSettings& shared, TwoState& state, CAnalysisDialog* window);

/// Whether the counts allow a comparison: two uncensored observations in all, and one observation in each
/// group; else NoUncensored.
Status CheckGroups(std::span<const GroupCount, 2> groups);

/// The number of a status's message, 0 for none.
int TwoMessage(Status status);

} // namespace ozm::survival
