#pragma once

#include "module/regression/cox/RiskSets.h"
#include "module/regression/results/ModelResults.h"
#include "module/regression/results/RegOutput.h"

#include <span>

namespace ozm::survival {

// The outputs of the proportional hazards model.

extern const ModelResults coxResults;

/// Plot 1: the survival function at the means of the covariates, a curve per stratum.
OutputResult PlotCoxSurvival(const RegReportOf& of);
/// Plot 2: martingale residuals against the linear predictor.
OutputResult PlotCoxResiduals(const RegReportOf& of);
/// Plot 3: the logarithm of the cumulative hazard against that of time, a curve per stratum.
OutputResult PlotCoxLogLog(const RegReportOf& of);
/// The survival function at the given values of the covariates with its limits, and its table. Fails with
/// StrRegTooManyValues or StrRegValuesTooFar.
OutputResult PlotCoxAtValues(const RegReportOf& of);

/// Breslow's estimator at the means of the covariates, one row per time of an event.
OutputResult WriteCoxSurvival(const RegReportOf& of);
/// One row per case, in order of the case numbers.
OutputResult WriteCoxResiduals(const RegReportOf& of);

OutputResult WriteProportionality(const RegReportOf& of);
/// One row per event.
OutputResult WriteSchoenfeld(const RegReportOf& of);
/// One chart per covariate.
OutputResult PlotSchoenfeld(const RegReportOf& of);

/// x'b at the means of the covariates.
double MeanPredictor(const RegressionResults& results);
/// The risk sets at the estimates; predictors are taken less that at the means.
RiskSets RiskSetsOf(const RegressionResults& results);

} // namespace ozm::survival
