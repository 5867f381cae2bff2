#include "module/regression/RegressionMessages.h"
#include "module/regression/data/ExpressionCovariates.h"
#include "module/regression/models/Models.h"
#include "module/regression/models/ProportionalHazards.h"
#include "module/regression/timedependent/FitTimeDependentCox.h"
#include "module/regression/timedependent/TimeDiagnosis.h"
#include "module/resources/Regression.h"
#include "module/resources/Resources.h"
#include "module/resources/TimeDependent.h"
#include "module/survdata/HostArray.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/StopTest.h"

#include <algorithm>

namespace ozm::survival {
namespace {

/// The most numbers that are kept of an evaluation: half a gigabyte. What does not fit is evaluated again.
constexpr std::size_t mostKept = std::size_t{1} << 26U;

/// The estimation with its covariates, and the room for their values.
struct Fitting {
    explicit Fitting(const EstimationRun& run)
        : sample(run.sample.Ordered()), covariates(run.host, run.compiled.Expressions(), run.sample,
                                                   run.variables, run.compiled.TimeReference()),
          cox{sample, covariates, {}, [&run](double) { return StopRequested(run.host); }, {}} {
        if (kept.Allocate(run.host, std::min(RoomFor(sample, covariates), mostKept))) cox.room = kept.Span();
    }
    OrderedSample sample;
    ExpressionCovariates covariates;
    HostArray<double> kept;
    TimeDependentCox cox;
};

Outcome Fit(EstimationRun& run) {
    // Memory that is missing for this ends the estimation without a message, like a stop.
    if (!run.sample.Order(run.host, run.strata)) return OutcomeOf(EstimationStatus::Stopped);
    if (run.show) run.show(StrRegComputing);
    run.parameters.resize(run.covariates.size(), 0.0);
    Fitting fitting(run);
    Outcome outcome =
        OutcomeOf(FitTimeDependentCox(fitting.cox, run.limits, run.watch, run.parameters, run.estimate));
    if (const auto& missing = fitting.cox.missing)
        outcome.detail = Filled(StrTimeFailed, {Quoted(run.covariates[missing->covariate]),
                                                FormatCount(run.sample.CaseNumbers()[missing->place]),
                                                FormatExact(missing->time)});
    return outcome;
}

Diagnosis Diagnose(const EstimationRun& run, const Outcome& outcome) {
    Diagnosis diagnosis;
    if (outcome.code == static_cast<int>(EstimationStatus::InvalidOperation)) return diagnosis;
    Fitting fitting(run);
    diagnosis.unbounded = FindUnbounded(fitting.cox);
    if (outcome.code == static_cast<int>(EstimationStatus::Singular))
        diagnosis.dependence = FindDependence(fitting.cox);
    return diagnosis;
}

std::vector<std::string> Explain(const EstimationRun& run, const Outcome& outcome) {
    return ExplainBy(Diagnose(run, outcome), run, outcome);
}

} // namespace

const RegressionModel timeDependentModel{.kind = RegressionKind::TimeDependent,
                                         .name = StrRegTimeDependent,
                                         .stratified = true,
                                         .firstText = StrSorting,
                                         .start = StartAtZero,
                                         .fit = Fit,
                                         .explain = Explain,
                                         .diagnose = Diagnose};

} // namespace ozm::survival
