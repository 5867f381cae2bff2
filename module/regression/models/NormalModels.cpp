#include "module/regression/models/Models.h"
#include "module/regression/models/ParametricReasons.h"
#include "module/regression/parametric/FitCensoredNormal.h"
#include "module/resources/Groups.h"
#include "module/resources/Regression.h"
#include "module/resources/Resources.h"
#include "module/survdata/ReportLines.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace ozm::survival {
namespace {

// The normal model of the times, and the lognormal one: that of their logarithms.

std::vector<double> Logarithms(std::span<const double> times) {
    std::vector<double> logarithms(times.size());
    std::ranges::transform(times, logarithms.begin(), [](double time) { return std::log(time); });
    return logarithms;
}

Outcome OutcomeOf(EmStatus status) {
    const auto code = static_cast<int>(status);
    switch (status) {
    case EmStatus::Success:
        return {};
    case EmStatus::Stopped:
        return {Ending::Stopped, code, 0, {}};
    case EmStatus::TooManyIterations:
        return {Ending::UsedUp, code, StrRegNotConverged, {}};
    case EmStatus::Singular:
    case EmStatus::SingularStart:
        return {Ending::Failed, code, StrRegSingular, {}};
    case EmStatus::TooFewUncensored:
        return {Ending::Failed, code, StrRegTooFewForModel, {}};
    case EmStatus::NotFinite:
        return {Ending::Failed, code, StrRegNoModelLikelihood, {}};
    default:
        return {Ending::Failed, code, StrRegEmError, FormatCount(code)};
    }
}

/// The estimation with these responses.
class NormalFit {
public:
    NormalFit(EstimationRun& run, std::span<const double> y) : run_(run), cases_(CasesOf(run.sample, y)) {}

    Outcome Compute() {
        if (run_.parameters.empty()) run_.parameters.assign(cases_.covariates + 2, 0.0);
        const int most = run_.made > 0 ? run_.further : run_.limits.most;
        Outcome outcome =
            OutcomeOf(Estimate(cases_, most, run_.made, run_.parameters, run_.estimate.iterations));
        if (outcome.code == static_cast<int>(EmStatus::TooFewUncensored))
            outcome.detail = CountOfParameters(run_.sample, run_.parameters.size());
        if (outcome.code == static_cast<int>(EmStatus::NotFinite)) outcome.detail = WhyNotFinite();
        if (outcome.ending == Ending::UsedUp && RanAway())
            outcome.detail = Filled(StrRegEmRanAway,
                                    {FormatNumber(run_.parameters.back()), FormatCount(run_.sample.Events()),
                                     FormatCount(static_cast<long long>(run_.sample.Cases()))});
        if (outcome.ending != Ending::Estimated) return outcome;
        if (FitsExactly(run_.parameters.back()))
            return {Ending::Failed, 0, StrRegNoModelLikelihood, Whole(StrRegNoScale)};
        Show(StrRegComputingLikelihood);
        NewtonEstimate& estimate = run_.estimate;
        estimate.nullScore = std::numeric_limits<double>::quiet_NaN();
        estimate.logLikelihood = model_->LogLikelihood();
        if (!std::isfinite(estimate.logLikelihood))
            return {Ending::Failed, 0, StrRegNoModelLikelihood, WhyNotFinite()};
        const NormalCovariance there = model_->Covariance();
        std::ranges::copy(there.gradient, estimate.gradient.begin());
        estimate.covariance = there.covariance;
        Show(StrRegEstimatingNull);
        return Null();
    }

private:
    EmStatus Estimate(const CensoredCases& cases, int most, int made, std::vector<double>& parameters,
                      int& iterations) {
        const std::vector<double> tolerances(parameters.size(), run_.limits.criterion);
        const auto watch = [&](int iteration, double logLikelihood, std::span<const double> at) {
            lastStep_ = std::abs(at.back() - lastSigma_);
            lastSigma_ = at.back();
            return run_.watch(made + iteration, logLikelihood, at);
        };
        return FitCensoredNormal(cases, {tolerances, most}, watch, parameters, iterations, model_);
    }
    /// Whether sigma still jumps: where few cases are uncensored its steps overshoot, further each time.
    [[nodiscard]] bool RanAway() const {
        constexpr int settlesBy = 10;
        constexpr double jump = 0.2;
        return run_.made + run_.estimate.iterations > settlesBy && lastStep_ > jump * lastSigma_;
    }
    /// Whether sigma is what rounding leaves of 0.
    [[nodiscard]] bool FitsExactly(double sigma) const {
        constexpr double rounding = 1e-10;
        const auto [least, greatest] = std::ranges::minmax(cases_.y);
        return sigma <= rounding * (greatest - least);
    }
    [[nodiscard]] std::string WhyNotFinite() const {
        constexpr double largest = 1e140; // squares must be numbers
        if (run_.startGiven) return Whole(StrRegStartTooFar);
        const auto [least, greatest] = std::ranges::minmax(run_.sample.Times());
        if (greatest > largest || greatest < 1.0 / largest)
            return Filled(StrRegBadTimes, {FormatNumber(least), FormatNumber(greatest)});
        return Whole(StrRegNoScale);
    }
    void Show(int text) const {
        if (run_.show) run_.show(text);
    }
    Outcome Null() {
        const CensoredCases bare = cases_.WithoutCovariates();
        std::vector<double> parameters(2, 0.0);
        int iterations = 0;
        const Outcome outcome = OutcomeOf(Estimate(bare, run_.limits.most, 0, parameters, iterations));
        if (outcome.ending == Ending::Stopped) return outcome;
        if (outcome.ending == Ending::Estimated) run_.estimate.nullLogLikelihood = model_->LogLikelihood();
        const bool exact = outcome.code == static_cast<int>(EmStatus::NotFinite) ||
                           (outcome.ending == Ending::Estimated && FitsExactly(parameters.back()));
        if (exact || outcome.ending != Ending::Estimated || !std::isfinite(run_.estimate.nullLogLikelihood))
            return {Ending::Failed, outcome.code, StrRegNoNullModel,
                    Whole(exact ? StrRegNullNoScale : StrRegOfNullModel), exact ? 0 : iterations};
        return {};
    }

    EstimationRun& run_;
    double lastSigma_ = 0.0; ///< of the iteration
    double lastStep_ = 0.0;  ///< of sigma
    CensoredCases cases_;
    std::optional<CensoredNormal> model_; ///< that was fitted last
};

Outcome FitLognormal(EstimationRun& run) {
    const std::span<const double> times = run.sample.Times();
    const auto zero = std::ranges::find_if(times, [](double time) { return !(time > 0.0); });
    if (zero == times.end()) return NormalFit(run, Logarithms(times)).Compute();
    const auto first = static_cast<std::size_t>(zero - times.begin());
    const auto count = std::ranges::count_if(times, [](double time) { return !(time > 0.0); });
    return {Ending::Failed, 0, StrRegNoModelLikelihood,
            Filled(StrRegNoLogarithm,
                   {FormatExact(*zero), FormatCount(run.sample.CaseNumbers()[first]), FormatCount(count)})};
}

Outcome FitNormal(EstimationRun& run) {
    return NormalFit(run, run.sample.Times()).Compute();
}

/// Those that the procedure makes of the uncensored cases; zeros where it cannot.
std::vector<double> StartOf(const RegressionSample& sample, std::span<const double> y) {
    std::vector<double> parameters(sample.Covariates() + 2, 0.0);
    const std::vector<double> tolerances(parameters.size(), 0.0);
    int iterations = 0;
    std::optional<CensoredNormal> model;
    const auto watch = [](int, double, std::span<const double>) { return false; };
    const bool finite = std::ranges::all_of(y, [](double each) { return std::isfinite(each); });
    if (!finite || FitCensoredNormal(CasesOf(sample, y), {tolerances, 0}, watch, parameters, iterations,
                                     model) != EmStatus::TooManyIterations)
        std::ranges::fill(parameters, 0.0);
    return parameters;
}

std::vector<double> StartLognormal(const RegressionSample& sample, std::size_t /*covariates*/) {
    return StartOf(sample, Logarithms(sample.Times()));
}

std::vector<double> StartNormal(const RegressionSample& sample, std::size_t /*covariates*/) {
    return StartOf(sample, sample.Times());
}

std::vector<std::string> Explain(const EstimationRun& run, const Outcome& outcome) {
    const auto status = static_cast<EmStatus>(outcome.code);
    if (status == EmStatus::TooFewUncensored || status == EmStatus::NotFinite) return {}; // it is clear why
    std::vector<std::string> texts = TellUnbounded(run);
    const bool singular = status == EmStatus::Singular || status == EmStatus::SingularStart;
    if (!texts.empty()) return texts;
    if (outcome.ending == Ending::Estimated && std::isnan(run.estimate.covariance(0, 0)))
        return {Whole(StrRegNotAMaximum)};
    if (outcome.ending == Ending::UsedUp)
        return outcome.detail.empty() ? TellNearlyConstant(run, 1e-3) : texts;
    if (!singular || outcome.ending == Ending::Estimated) return texts;
    texts = TellDependence(run);
    if (texts.empty() && status == EmStatus::SingularStart) texts = TellDependenceAtStart(run);
    if (texts.empty()) texts.push_back(TellTooLittle(run));
    return texts;
}

constexpr int constantAndSigma[] = {StrRegConstant, StrRegSigma};

} // namespace

const RegressionModel lognormalModel{.kind = RegressionKind::Lognormal,
                                     .name = StrRegLognormal,
                                     .ownParameters = constantAndSigma,
                                     .showsLikelihood = false,
                                     .countsOn = true,
                                     .firstText = StrPreparingData,
                                     .start = StartLognormal,
                                     .fit = FitLognormal,
                                     .explain = Explain};
const RegressionModel normalModel{.kind = RegressionKind::Normal,
                                  .name = StrRegNormal,
                                  .ownParameters = constantAndSigma,
                                  .showsLikelihood = false,
                                  .countsOn = true,
                                  .firstText = StrPreparingData,
                                  .start = StartNormal,
                                  .fit = FitNormal,
                                  .explain = Explain};

} // namespace ozm::survival
