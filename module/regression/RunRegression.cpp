#include "module/regression/RunRegression.h"

#include "module/regression/RegressionMessages.h"
#include "module/regression/RegressionModels.h"
#include "module/regression/data/DataChecks.h"
#include "module/regression/data/RegressionReader.h"
#include "module/regression/estimation/IterationLines.h"
#include "module/resources/Regression.h"
#include "module/resources/TimeDependent.h"
#include "module/survdata/AnalysisRun.h"
#include "module/survdata/ChosenCodes.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/SelectionChecks.h"

#include <algorithm>
#include <limits>
#include <string>

namespace ozm::survival {
namespace {

constexpr std::size_t mostStrata = 16000;
constexpr int furtherIterations = 30;

/// The preparation, and what it learns for its messages.
struct Preparation {
    CAnalysisSupport& host;
    SharedSettings& shared;
    RegressionState& state;
    DataFault fault;
    ChosenCodes strata;
    CompiledCovariates::Fault expressionFault;
    std::string details; ///< of a failure: the data are released before the message is shown

    RegressionStatus Compute() {
        const RegressionStatus status = Prepare();
        if (status != RegressionStatus::Success) details = Describe(status);
        return status;
    }

private:
    RegressionStatus Prepare();
    bool TakeCovariates();
    bool TakeStrata();
    [[nodiscard]] std::string Describe(RegressionStatus status) const;
};

bool Preparation::TakeCovariates() {
    RegressionResults& results = state.results;
    const bool byExpressions = results.kind == RegressionKind::TimeDependent;
    if (byExpressions) {
        results.defined = state.settings.expressions;
        expressionFault = results.compiled.Compile(host, results.defined);
        if (!expressionFault.text.empty()) return false;
    }
    results.covariates = byExpressions ? results.compiled.Variables() : shared.List(ListCovariates);
    for (const int variable : results.covariates)
        results.variableNames.push_back(VariableName(host, variable));
    results.names = results.variableNames;
    if (!byExpressions) return true;
    results.names.clear();
    for (const DefinedCovariate& each : results.defined)
        results.names.push_back(each.name);
    return true;
}

bool Preparation::TakeStrata() {
    RegressionResults& results = state.results;
    results.stratumVariable = shared.First(ListStrata);
    shared.groupCodes.clear();
    if (!results.Stratified()) return true;
    strata = ChooseCodes(host, results.stratumVariable, state.settings.strata, mostStrata);
    results.strata = shared.groupCodes = strata.codes;
    return strata.fault == ChosenCodes::Fault::None;
}

RegressionStatus Preparation::Prepare() {
    RegressionResults& results = state.results;
    results.Release();
    results.kind = state.settings.kind;
    if (!TakeCovariates()) return RegressionStatus::BadExpression;
    state.ForgetValuesOfOthers();
    if (!TakeStrata()) return RegressionStatus::BadStrata;
    const RegressionStatus status = ReadRegression(host, shared, state.settings, results);
    results.parameterNames = results.names;
    for (const int own : ModelOf(results.kind).ownParameters)
        results.parameterNames.push_back(Whole(own));
    fault = CheckRegressionData(results, status);
    if (fault.status != RegressionStatus::Success) return fault.status;
    results.prepared = true;
    TellPreparation(host, shared, results);
    return RegressionStatus::Success;
}

std::string Preparation::Describe(RegressionStatus status) const {
    if (status == RegressionStatus::BadExpression) {
        const DefinedCovariate& at = state.results.defined[expressionFault.covariate];
        return Filled(StrTimeFaultDetail, {at.name, at.expression, expressionFault.text});
    }
    if (status != RegressionStatus::BadStrata)
        return DescribeDataFault(host, shared, state.results, status, fault.covariate);
    const int variable = state.results.stratumVariable;
    std::string text;
    if (strata.fault == ChosenCodes::Fault::Twice)
        text = Filled(StrRegStratumTwice, {FormatExact(strata.code)}) + "\n";
    if (strata.fault == ChosenCodes::Fault::TooMany)
        text = Filled(StrRegTooManyStrata, {QuotedName(host, variable), FormatCount(mostStrata)}) + "\n";
    return text + DescribeCodes(host, variable);
}

/// How the step of the estimation ended.
enum class EstimationEnd : std::uint8_t { Success, NoMemory, Stopped, NotEstimated };

/// The estimation, and what it learns for its messages.
class Estimation {
public:
    Estimation(CAnalysisSupport& host, RegressionState& state, CAnalysisDialog* window)
        : host_(host), state_(state), window_(window), model_(ModelOf(state.results.kind)) {}

    EstimationEnd Compute(StatusLine& line);
    [[nodiscard]] int Message(EstimationEnd end) const;
    [[nodiscard]] std::string Describe(EstimationEnd end) const;
    [[nodiscard]] int FirstText() const { return model_.firstText; }

private:
    Outcome Fit(EstimationRun& run, StatusLine& line);
    bool WantsMore(StatusLine& line);
    void Explain(const EstimationRun& run);

    CAnalysisSupport& host_;
    RegressionState& state_;
    CAnalysisDialog* window_;
    const RegressionModel& model_;
    Outcome outcome_;
    std::string lastLines_;
    std::string reasons_;
    int iterations_ = 0; ///< of all runs
};

Outcome Estimation::Fit(EstimationRun& run, StatusLine& line) {
    run.made = model_.countsOn ? iterations_ : 0;
    run.further = furtherIterations;
    run.limits.most = state_.settings.maximumIterations;
    run.estimate = {};
    IterationLines lines(host_, run.covariates.size(), model_.showsLikelihood);
    run.show = [&](int text) {
        line.Show(text);
        lines.Say(text);
    };
    run.watch = [&](int iteration, double logLikelihood, std::span<const double> at) {
        lines.Add(iteration, logLikelihood, at);
        return StopRequested(host_);
    };
    Outcome outcome = model_.fit(run);
    lastLines_ = lines.Last();
    iterations_ += run.estimate.iterations;
    if (model_.countsOn) run.estimate.iterations = iterations_;
    return outcome;
}

bool Estimation::WantsMore(StatusLine& line) {
    if (outcome_.ending != Ending::UsedUp) return false;
    if (host_.DisplayInstQuestion(host_.GetLibInstance(), window_, StrRegMoreIterations) != ButtonYes)
        return false;
    constexpr int most = std::numeric_limits<std::int16_t>::max();
    std::int16_t& maximum = state_.settings.maximumIterations;
    maximum = static_cast<std::int16_t>(std::min(maximum + furtherIterations, most));
    line.Show(model_.firstText);
    return true;
}

void Estimation::Explain(const EstimationRun& run) {
    for (const std::string& text : model_.explain(run, outcome_)) {
        if (outcome_.ending == Ending::Estimated)
            host_.DspMessageBox(MessageStyle::Warning, nullptr, 0, text, {});
        reasons_ += (reasons_.empty() ? "" : "\n") + text;
    }
}

EstimationEnd Estimation::Compute(StatusLine& line) {
    RegressionResults& results = state_.results;
    const std::vector<double>& start = state_.settings.startValues;
    results.held = false;
    results.criterion = state_.settings.convergenceCriterion;
    results.estimates = start;
    EstimationRun run{.host = host_,
                      .sample = results.sample,
                      .covariates = results.names,
                      .compiled = results.compiled,
                      .variables = results.covariates,
                      .strata = std::max<std::size_t>(results.strata.size(), 1),
                      .limits = {.criterion = results.criterion},
                      .startGiven =
                          !start.empty() && start != model_.start(results.sample, results.names.size()),
                      .parameters = results.estimates,
                      .estimate = results.estimate,
                      .show = {},
                      .watch = {}};
    do
        outcome_ = Fit(run, line);
    while (WantsMore(line));
    if (outcome_.ending == Ending::Stopped || outcome_.ending == Ending::NotSorted)
        return EstimationEnd::Stopped;
    Explain(run);
    if (outcome_.ending != Ending::Estimated) return EstimationEnd::NotEstimated;
    results.held = true;
    if (iterations_ > results.estimate.iterations)
        host_.DspMessageBox(MessageStyle::Note, nullptr, 0,
                            Filled(StrRegContinuedInAll, {FormatCount(iterations_)}), {});
    return EstimationEnd::Success;
}

int Estimation::Message(EstimationEnd end) const {
    switch (end) {
    case EstimationEnd::NoMemory:
        return StrRegNoMemory;
    case EstimationEnd::NotEstimated:
        return outcome_.ending == Ending::UsedUp && !host_.IsOleAutomation() ? 0 : outcome_.message;
    default:
        return 0;
    }
}

std::string Estimation::Describe(EstimationEnd end) const {
    if (end != EstimationEnd::NotEstimated) return {};
    std::string text = outcome_.detail;
    const auto add = [&text](const std::string& further) {
        text += (text.empty() || further.empty() ? "" : "\n") + further;
    };
    add(reasons_.empty() ? outcome_.otherwise : reasons_);
    if (outcome_.ending == Ending::UsedUp && text.empty()) add(Whole(StrRegNotConvergedWay));
    if (iterations_ == 0) return text;
    const int last = outcome_.iterations > 0 ? outcome_.iterations : state_.results.estimate.iterations;
    add(outcome_.iterations == 0 && iterations_ > last
            ? Filled(StrRegLastIterationsInAll, {FormatCount(last), FormatCount(iterations_)})
            : Filled(StrRegLastIterations, {FormatCount(last)}));
    add(lastLines_);
    return text;
}

} // namespace

bool PrepareRegression(CAnalysisSupport& host, SharedSettings& shared, RegressionState& state,
                       CAnalysisDialog* window) {
    Preparation preparation{host, shared, state, {}, {}, {}, {}};
    return RunAnalysis(
        host, window, StrReadingDataFile, [&](StatusLine& /*line*/) { return preparation.Compute(); },
        [&] { state.results.Release(); }, RegressionMessage,
        [&](RegressionStatus /*status*/) { return preparation.details; });
}

bool EstimateRegression(CAnalysisSupport& host, RegressionState& state, CAnalysisDialog* window) {
    Estimation estimation(host, state, window);
    return RunAnalysis(
        host, window, estimation.FirstText(), [&](StatusLine& line) { return estimation.Compute(line); },
        [&] { state.results.held = false; }, [&](EstimationEnd end) { return estimation.Message(end); },
        [&](EstimationEnd end) { return estimation.Describe(end); });
}

} // namespace ozm::survival
