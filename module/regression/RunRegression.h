#pragma once

#include "module/regression/RegressionState.h"
#include "module/survdata/SharedSettings.h"
#include "support/CAnalysisSupport.h"

namespace ozm {
class CAnalysisDialog;
}

namespace ozm::survival {

/// Prepares the data of a regression by the shared selections: reads the cases, and checks them. True when
/// `state.results` has them; else the message was shown over `window` (none after a stop), and nothing is
/// kept.
bool PrepareRegression(CAnalysisSupport& host, SharedSettings& shared, RegressionState& state,
                       CAnalysisDialog* window);

/// Estimates the model of prepared data, from the settings' start values. Where the iterations run out the
/// user is asked for more, which start where the others ended and raise the settings' maximum. True when
/// `state.results` has the estimates; else the message was shown, and the prepared data are kept. Somebody
/// who said that there should be no more iterations is not told so; a script is.
bool EstimateRegression(CAnalysisSupport& host, RegressionState& state, CAnalysisDialog* window);

} // namespace ozm::survival
