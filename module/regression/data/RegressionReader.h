#pragma once

#include "module/regression/RegressionState.h"
#include "module/regression/RegressionStatus.h"
#include "module/survdata/SharedSettings.h"
#include "support/CAnalysisSupport.h"

namespace ozm::survival {

/// Reads the cases of a regression into `results.sample`, in the order of the data: covariates and
/// stratification variable are those of the shared lists, strata those of `settings.strata` (or all codes
/// where these are empty). A case with a missing covariate is left out, or gets the covariate's mean over the
/// cases that are valid otherwise. Strata without a case are dropped. Computes means and standard deviations.
RegressionStatus ReadRegression(CAnalysisSupport& host, SharedSettings& shared,
                                const RegressionSettings& settings, RegressionResults& results);

} // namespace ozm::survival
