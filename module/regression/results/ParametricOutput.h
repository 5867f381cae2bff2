#pragma once

#include "module/regression/parametric/ParametricResiduals.h"
#include "module/regression/parametric/Predictions.h"
#include "module/regression/results/ModelResults.h"
#include "module/regression/results/RegOutput.h"

#include <span>
#include <vector>

namespace ozm::survival {

// The outputs of the exponential, lognormal and normal model.

extern const ModelResults exponentialResults;
extern const ModelResults lognormalResults;
extern const ModelResults normalResults;

/// Plot 1: the fitted survival function at the means of the covariates, with the Kaplan-Meier estimate.
OutputResult PlotFittedSurvival(const RegReportOf& of);
/// Plot 2 of the exponential model: Cox-Snell residuals against their cumulative hazard.
OutputResult PlotCoxSnellHazard(const RegReportOf& of);
/// Plot 2 of the others: standardised residuals on normal probability paper.
OutputResult PlotNormalScores(const RegReportOf& of);
/// Plot 3: residuals against the linear predictor.
OutputResult PlotParametricResiduals(const RegReportOf& of);
/// Predicted survival with its limits at the given values of the covariates, its table, and the quartiles of
/// the survival time. Fails with StrRegTooManyValues or StrRegValuesTooFar.
OutputResult PlotPredictions(const RegReportOf& of);

/// Kaplan-Meier estimate and fitted survival at the means, one row per time of an event.
OutputResult WriteFittedSurvival(const RegReportOf& of);
/// One row per case, in order of the case numbers.
OutputResult WriteParametricResiduals(const RegReportOf& of);
/// The parametric models fitted to the same cases, to choose between them.
OutputResult WriteComparison(const RegReportOf& of);

OutputResult PlotTimeRatios(const RegReportOf& of);

// What several of them need.

/// The distribution of a parametric model.
TimeDistribution DistributionOf(RegressionKind kind);
/// Refers to the results.
inline FittedTimes FittedOf(const RegressionResults& results) {
    return {DistributionOf(results.kind), results.estimates};
}
/// What is predicted at these covariates; refers to the results.
Predictor PredictorAt(const RegReportOf& of, std::span<const double> covariates);
ParametricResiduals ResidualsOf(const RegressionResults& results);
/// The sum of the logarithms of the uncensored times: by so much the log-likelihood on the scale of log time
/// is above that on the scale of time. -infinity with a time of 0.
double SumOfLogTimes(const RegressionSample& sample);

/// Akaike's criterion, of a log-likelihood on the scale of time.
inline double Akaike(double logLikelihood, std::size_t parameters) {
    return 2.0 * static_cast<double>(parameters) - 2.0 * logLikelihood;
}

} // namespace ozm::survival
