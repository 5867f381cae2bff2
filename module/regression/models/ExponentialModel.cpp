#include "module/regression/models/Models.h"
#include "module/regression/models/ParametricReasons.h"
#include "module/regression/parametric/ExponentialRegression.h"
#include "module/regression/parametric/PackedCholesky.h"
#include "module/resources/Regression.h"
#include "module/resources/Resources.h"
#include "module/survdata/ReportLines.h"

#include <cmath>
#include <limits>
#include <numeric>

namespace ozm::survival {
namespace {

/// No effects, and the mean time of all cases.
std::vector<double> Start(const RegressionSample& sample, std::size_t /*covariates*/) {
    std::vector<double> parameters(sample.Covariates() + 1, 0.0);
    const double time = std::accumulate(sample.Times().begin(), sample.Times().end(), 0.0);
    parameters.back() = std::log(time / sample.Events());
    return parameters;
}

Outcome OutcomeOf(ExponentialStatus status) {
    const auto code = static_cast<int>(status);
    switch (status) {
    case ExponentialStatus::Success:
        return {};
    case ExponentialStatus::Stopped: // there are covariates: it is not the other condition of this number
        return {Ending::Stopped, code, 0, {}};
    case ExponentialStatus::TooManyIterations:
        return {Ending::Failed, code, StrRegTooManyIterations, {}};
    case ExponentialStatus::NotFinite:
        return {Ending::Failed, code, StrRegNoLikelihood, {}};
    case ExponentialStatus::Singular:
        return {Ending::Failed, code, StrRegSingular, {}};
    case ExponentialStatus::NoTime:
        return {Ending::Failed, code, StrRegConstantTimes, {}};
    case ExponentialStatus::NoEvents:
    case ExponentialStatus::TooFewEvents:
        return {Ending::Failed, code, StrRegTooFewForModel, {}};
    case ExponentialStatus::NoCases:
    case ExponentialStatus::NotAFlag:
    case ExponentialStatus::NegativeTime:
        break;
    }
    return {Ending::Failed, code, StrRegUnfit, {}};
}

void Take(const ExponentialFit& fit, NewtonEstimate& estimate) {
    estimate.logLikelihood = fit.logLikelihood;
    estimate.nullLogLikelihood = fit.nullLogLikelihood;
    estimate.nullScore = std::numeric_limits<double>::quiet_NaN();
    estimate.iterations = fit.iterations;
    std::ranges::copy(fit.gradient, estimate.gradient.begin());
    if (fit.covariance.empty()) return;
    for (std::size_t k = 0; k < fit.parameters.size(); ++k)
        for (std::size_t l = 0; l <= k; ++l)
            estimate.covariance(k, l) = estimate.covariance(l, k) =
                fit.covariance[PackedCholesky::SizeOf(k) + l];
}

Outcome Fit(EstimationRun& run) {
    ExponentialFit fit;
    const ExponentialStatus status =
        FitExponential(CasesOf(run.sample, run.sample.Times()), run.limits, run.watch, run.parameters, fit);
    run.parameters = fit.parameters;
    Take(fit, run.estimate);
    Outcome outcome = OutcomeOf(status);
    if (status == ExponentialStatus::TooFewEvents)
        outcome.detail = CountOfParameters(run.sample, run.covariates.size() + 1);
    return outcome;
}

std::vector<std::string> Explain(const EstimationRun& run, const Outcome& outcome) {
    if (run.estimate.iterations == 0) return {}; // it is clear why
    std::vector<std::string> texts = TellUnbounded(run);
    const auto status = static_cast<ExponentialStatus>(outcome.code);
    if (outcome.ending == Ending::Estimated) return texts;
    const NewtonEstimate& estimate = run.estimate;
    if (status == ExponentialStatus::Singular && texts.empty()) texts = TellDependence(run);
    if (status == ExponentialStatus::TooManyIterations && estimate.logLikelihood > 0.0)
        texts.push_back(Whole(StrRegLargerUnits));
    // From its start the likelihood rises, unless a step is too long.
    if (texts.empty() && !(estimate.logLikelihood >= estimate.nullLogLikelihood))
        texts.push_back(Whole(StrRegOvershot));
    if (status == ExponentialStatus::Singular && texts.empty()) texts.push_back(TellTooLittle(run));
    return texts;
}

constexpr int constant[] = {StrRegConstant};

} // namespace

const RegressionModel exponentialModel{.kind = RegressionKind::Exponential,
                                       .name = StrRegExponential,
                                       .ownParameters = constant,
                                       .firstText = StrRegComputing,
                                       .start = Start,
                                       .fit = Fit,
                                       .explain = Explain};

} // namespace ozm::survival
