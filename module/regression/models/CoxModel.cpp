#include "module/regression/RegressionMessages.h"
#include "module/regression/cox/CoxDiagnosis.h"
#include "module/regression/cox/FitCox.h"
#include "module/regression/models/Models.h"
#include "module/resources/Regression.h"
#include "module/resources/Resources.h"
#include "module/survdata/ReportLines.h"

#include <algorithm>

namespace ozm::survival {
namespace {

std::vector<double> Start(const RegressionSample& sample) {
    return std::vector<double>(sample.Covariates(), 0.0);
}

Outcome OutcomeOf(EstimationStatus status) {
    const auto code = static_cast<int>(status);
    switch (status) {
    case EstimationStatus::Success:
        return {};
    case EstimationStatus::Stopped:
        return {Ending::Stopped, code, 0, {}};
    case EstimationStatus::NotConverged:
        return {Ending::UsedUp, code, StrRegNotConverged, {}};
    case EstimationStatus::Singular:
        return {Ending::Failed, code, StrRegSingular, {}};
    case EstimationStatus::NoLikelihood:
        return {Ending::Failed, code, StrRegNoLikelihood, {}};
    case EstimationStatus::InvalidOperation:
        return {Ending::Failed, code, StrRegInvalidOperation, {}};
    }
    return {Ending::Failed, code, StrRegNoLikelihood, {}};
}

Outcome Fit(EstimationRun& run) {
    // Memory that is missing for this ends the estimation without a message, like a stop.
    if (!run.sample.Order(run.host, run.strata)) return OutcomeOf(EstimationStatus::Stopped);
    if (run.show) run.show(StrRegComputing);
    if (run.parameters.empty()) run.parameters = Start(run.sample);
    return OutcomeOf(FitCox(run.sample, run.limits, run.watch, run.parameters, run.estimate));
}

std::vector<std::string> Explain(const EstimationRun& run, const Outcome& outcome) {
    const auto status = static_cast<EstimationStatus>(outcome.code);
    const Diagnosis diagnosis = DiagnoseCox(run.sample, run.parameters, run.estimate, status);
    std::vector<std::string> texts = DescribeDiagnosis(run.covariates, run.strata > 1, diagnosis);
    if (status != EstimationStatus::Singular || !texts.empty()) return texts;
    const auto count = static_cast<long long>(run.covariates.size());
    return {run.startGiven ? Whole(StrRegTryZeros) : Filled(StrRegTooLittle, {FormatCount(count)})};
}

} // namespace

const RegressionModel coxModel{.kind = RegressionKind::ProportionalHazards,
                               .name = StrRegCox,
                               .stratified = true,
                               .firstText = StrSorting,
                               .start = Start,
                               .fit = Fit,
                               .explain = Explain};

} // namespace ozm::survival
