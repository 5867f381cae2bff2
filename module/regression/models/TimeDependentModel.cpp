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
#include <cmath>

namespace ozm::survival {
namespace {

/// The most numbers that are kept of an evaluation: half a gigabyte. What does not fit is evaluated again.
constexpr std::size_t mostKept = std::size_t{1} << 26U;

/// How many of those needed are kept. Less than half of them is not worth the memory: a short expression is
/// evaluated about as fast as its values are fetched.
std::size_t Kept(std::size_t needed) {
    const std::size_t kept = std::min(needed, mostKept);
    return kept < needed / 2 ? 0 : kept;
}

/// Shows how far the evaluation of a likelihood is, where that takes long, and asks for a stop.
class EvaluationProgress {
public:
    explicit EvaluationProgress(CAnalysisSupport& host) : host_(host) {}
    ~EvaluationProgress() {
        if (begun_) host_.dstop();
    }
    EvaluationProgress(const EvaluationProgress&) = delete;
    EvaluationProgress& operator=(const EvaluationProgress&) = delete;

    void BeginIteration(int number) { iteration_ = number; }
    /// Whether to stop.
    bool Tell(double share) {
        const auto done = static_cast<unsigned>(share * units);
        if (!begun_ || done < done_) {
            begun_ = true;
            done_ = 0;
            host_.dstart(units);
            host_.d_pbar(Filled(StrTimeEvaluation, {FormatCount(iteration_)}));
        }
        if (done > done_) host_.termom(done - done_);
        done_ = done;
        stopped_ = stopped_ || StopRequested(host_);
        return stopped_;
    }
    /// Whether somebody asked for it.
    [[nodiscard]] bool Stopped() const { return stopped_; }

private:
    static constexpr unsigned units = 1000;
    CAnalysisSupport& host_;
    int iteration_ = 1;
    bool begun_ = false;
    bool stopped_ = false;
    unsigned done_ = 0;
};

/// The estimation with its covariates, and the room for their values.
struct Fitting {
    explicit Fitting(const EstimationRun& run)
        : progress(run.host), sample(run.sample.Ordered()),
          covariates(run.host, run.compiled.Expressions(), run.sample, run.variables,
                     run.compiled.TimeReference()),
          needed(RoomFor(sample, covariates)), cox{sample,
                                                   covariates,
                                                   {},
                                                   [this](double share) { return progress.Tell(share); },
                                                   {}} {
        if (kept.Allocate(run.host, Kept(needed))) cox.room = kept.Span();
    }
    Fitting(const Fitting&) = delete;
    Fitting& operator=(const Fitting&) = delete;

    [[nodiscard]] std::string WhatIsKept() const {
        const auto megabytes = [](std::size_t numbers) {
            const double size = static_cast<double>(numbers * sizeof(double)) / 1e6;
            return size < 1000 ? FormatNumber(size, 3) : FormatCount(std::llround(size));
        };
        const std::size_t room = cox.room.size();
        if (room == 0) return Whole(StrTimeNotKept);
        return Filled(room < needed ? StrTimeKeptInPart : StrTimeKept, {megabytes(room), megabytes(needed)});
    }

    EvaluationProgress progress;
    OrderedSample sample;
    ExpressionCovariates covariates;
    std::size_t needed;
    HostArray<double> kept;
    TimeDependentCox cox;
};

Outcome Fit(EstimationRun& run) {
    if (!run.sample.Order(run.host, run.strata)) return {Ending::NotSorted, 0, 0, {}};
    if (run.show) run.show(StrRegComputing);
    run.parameters.resize(run.covariates.size(), 0.0);
    Fitting fitting(run);
    if (run.show && fitting.needed > 0) run.host.d_stat(fitting.WhatIsKept());
    const IterationWatch watch = [&](int iteration, double logLikelihood, std::span<const double> at) {
        fitting.progress.BeginIteration(iteration + 1);
        return run.watch(iteration, logLikelihood, at);
    };
    Outcome outcome =
        OutcomeOf(FitTimeDependentCox(fitting.cox, run.limits, watch, run.parameters, run.estimate));
    const auto describe = [&](int text, const ValueAt& value) {
        return Filled(text, {Quoted(run.covariates[value.covariate]),
                             FormatCount(run.sample.CaseNumbers()[value.place]), FormatExact(value.time)});
    };
    if (const auto& missing = fitting.cox.missing) outcome.detail = describe(StrTimeFailed, *missing);
    if (const auto& beyond = fitting.cox.beyond) outcome.otherwise = describe(StrTimeBeyond, *beyond);
    return outcome;
}

/// Whether estimates give reason to look for coefficients that grow without bound together: such that are
/// nothing beside their standard errors, as these grow much faster.
bool MayBeUnbounded(const EstimationRun& run, const Outcome& outcome) {
    if (outcome.ending != Ending::Estimated) return true;
    for (std::size_t k = 0; k < run.parameters.size(); ++k)
        if (!(std::abs(run.parameters[k]) > 0.01 * std::sqrt(run.estimate.covariance(k, k)))) return true;
    return false;
}

Diagnosis Diagnose(const EstimationRun& run, const Outcome& outcome) {
    Diagnosis diagnosis;
    if (outcome.code == static_cast<int>(EstimationStatus::InvalidOperation)) return diagnosis;
    Fitting fitting(run);
    diagnosis.unbounded = FindUnbounded(fitting.cox);
    if (diagnosis.unbounded.empty() && MayBeUnbounded(run, outcome))
        diagnosis.unboundedTogether = FindUnboundedTogether(fitting.cox, run.parameters);
    if (outcome.code == static_cast<int>(EstimationStatus::Singular)) {
        diagnosis.dependence = FindDependence(fitting.cox);
        if (!diagnosis.dependence) diagnosis.scales = FindScales(fitting.cox);
    }
    diagnosis.stopped = fitting.progress.Stopped();
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
