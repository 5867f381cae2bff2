#include "module/regression/cox/CoxDiagnosis.h"
#include "module/regression/cox/FitCox.h"
#include "module/regression/models/Models.h"
#include "module/regression/models/ProportionalHazards.h"
#include "module/resources/Regression.h"

namespace ozm::survival {
namespace {

Outcome Fit(EstimationRun& run) {
    if (!run.sample.Order(run.host, run.strata)) return {Ending::NotSorted, 0, 0, {}};
    if (run.show) run.show(StrRegComputing);
    run.parameters.resize(run.covariates.size(), 0.0);
    return OutcomeOf(FitCox(run.sample, run.limits, run.watch, run.parameters, run.estimate));
}

Diagnosis Diagnose(const EstimationRun& run, const Outcome& outcome) {
    return DiagnoseCox(run.sample, run.parameters, run.estimate, static_cast<EstimationStatus>(outcome.code));
}

std::vector<std::string> Explain(const EstimationRun& run, const Outcome& outcome) {
    return ExplainBy(Diagnose(run, outcome), run, outcome);
}

} // namespace

const RegressionModel coxModel{.kind = RegressionKind::ProportionalHazards,
                               .name = StrRegCox,
                               .stratified = true,
                               .firstText = StrSorting,
                               .start = StartAtZero,
                               .fit = Fit,
                               .explain = Explain,
                               .diagnose = Diagnose};

} // namespace ozm::survival
