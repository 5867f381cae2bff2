#pragma once

#include "module/regression/timedependent/CovariateList.h"
#include "support/CAnalysisSupport.h"

#include <vector>

namespace ozm {
class CAnalysisDialog;
}

namespace ozm::survival {

// Files of covariates that expressions define, in the layout of initialisation files:
//
//   [Expressions]
//   HowManyExpressions=2
//   X_COV_1=age * log(T_)
//   Rx=drug

/// Asks for a file and writes the covariates to it, in place of those that it had. False when there are none,
/// after a message; when the user cancelled it; or when it cannot be written, after a message.
bool SaveExpressions(CAnalysisSupport& host, CAnalysisDialog* window,
                     const std::vector<DefinedCovariate>& covariates);

/// Asks for a file and adds its covariates. For names that the list has the user is asked once whether they
/// take the place of these or stand beside them. A text that there is no room for is cut, and covariates
/// beyond the most are left out, after a message. False, with the list as it was, when the user cancelled it,
/// or there are none, after a message.
bool OpenExpressions(CAnalysisSupport& host, CAnalysisDialog* window,
                     std::vector<DefinedCovariate>& covariates);

} // namespace ozm::survival
