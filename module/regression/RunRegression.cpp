#include "module/regression/RunRegression.h"

#include "module/regression/RegressionMessages.h"
#include "module/regression/RegressionModels.h"
#include "module/regression/data/DataChecks.h"
#include "module/regression/data/RegressionReader.h"
#include "module/regression/estimation/IterationLines.h"
#include "module/resources/Regression.h"
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
    std::string details; ///< of a failure: the data are released before the message is shown

    RegressionStatus Compute() {
        const RegressionStatus status = Prepare();
        if (status != RegressionStatus::Success) details = Describe(status);
        return status;
    }

private:
    RegressionStatus Prepare();
    bool TakeStrata();
    [[nodiscard]] std::string Describe(RegressionStatus status) const;
};

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
    const RegressionModel* const model = FindRegressionModel(results.kind);
    results.covariates = shared.List(ListCovariates);
    for (const int variable : results.covariates)
        results.names.push_back(VariableName(host, variable));
    state.ForgetValuesOfOthers();
    if (!TakeStrata()) return RegressionStatus::BadStrata;
    const RegressionStatus status = ReadRegression(host, shared, state.settings, results);
    results.estimates.assign(results.covariates.size(), 0.0);
    fault = CheckRegressionData(results, status, model->parametersNeedEvents);
    if (fault.status != RegressionStatus::Success) return fault.status;
    results.prepared = true;
    TellPreparation(host, shared, results);
    return RegressionStatus::Success;
}

std::string Preparation::Describe(RegressionStatus status) const {
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

/// The estimation, and what it learns for its messages.
struct Estimation {
    CAnalysisSupport& host;
    RegressionState& state;
    CAnalysisDialog* window;
    std::string lastLines;
    std::string details;
    int iterations = 0; ///< of all runs

    RegressionStatus Compute(StatusLine& line);
    [[nodiscard]] int Message(RegressionStatus status) const;
    [[nodiscard]] std::string Describe(RegressionStatus status) const;

private:
    EstimationStatus Fit(const RegressionModel& model, StatusLine& line);
    bool WantsMore(EstimationStatus status, StatusLine& line);
    void Diagnose(const RegressionModel& model, EstimationStatus status);
};

EstimationStatus Estimation::Fit(const RegressionModel& model, StatusLine& line) {
    RegressionResults& results = state.results;
    // Memory that is missing for this ends the estimation without a message, like a stop.
    if (!results.sample.Order(host, std::max<std::size_t>(results.strata.size(), 1)))
        return EstimationStatus::Stopped;
    line.Show(StrRegComputing);
    IterationLines lines(host, results.Parameters());
    const IterationWatch watch = [&](int iteration, double logLikelihood, std::span<const double> at) {
        lines.Add(iteration, logLikelihood, at);
        return StopRequested(host);
    };
    const IterationLimits limits{results.criterion, state.settings.maximumIterations};
    const EstimationStatus status =
        model.fit(results.sample, limits, watch, results.estimates, results.estimate);
    lastLines = lines.Last();
    return status;
}

bool Estimation::WantsMore(EstimationStatus status, StatusLine& line) {
    if (status != EstimationStatus::NotConverged) return false;
    if (host.DisplayInstQuestion(host.GetLibInstance(), window, StrRegMoreIterations) != ButtonYes)
        return false;
    constexpr int most = std::numeric_limits<std::int16_t>::max();
    std::int16_t& maximum = state.settings.maximumIterations;
    maximum = static_cast<std::int16_t>(std::min(maximum + furtherIterations, most));
    line.Show(StrSorting);
    return true;
}

void Estimation::Diagnose(const RegressionModel& model, EstimationStatus status) {
    const RegressionResults& results = state.results;
    for (const std::string& text : DescribeDiagnosis(
             results, model.diagnose(results.sample, results.estimates, results.estimate, status))) {
        if (status == EstimationStatus::Success)
            host.DspMessageBox(MessageStyle::Warning, nullptr, 0, text, {});
        details += (details.empty() ? "" : "\n") + text;
    }
    if (status != EstimationStatus::Singular || !details.empty()) return;
    const bool fromZeros = std::ranges::all_of(state.settings.startValues, [](double b) { return b == 0.0; });
    details = fromZeros ? Filled(StrRegTooLittle, {FormatCount(static_cast<long long>(results.Parameters()))})
                        : Whole(StrRegTryZeros);
}

RegressionStatus Estimation::Compute(StatusLine& line) {
    RegressionResults& results = state.results;
    const RegressionModel& model = *FindRegressionModel(results.kind);
    results.held = false;
    results.criterion = state.settings.convergenceCriterion;
    results.estimates = state.settings.startValues;
    results.estimates.resize(results.covariates.size(), 0.0);
    EstimationStatus status = EstimationStatus::Success;
    do {
        results.estimate = {};
        status = Fit(model, line);
        iterations += results.estimate.iterations;
    } while (WantsMore(status, line));
    if (status != EstimationStatus::Stopped) Diagnose(model, status);
    results.held = status == EstimationStatus::Success;
    if (results.held && iterations > results.estimate.iterations)
        host.DspMessageBox(MessageStyle::Note, nullptr, 0,
                           Filled(StrRegContinuedInAll, {FormatCount(iterations)}), {});
    return static_cast<RegressionStatus>(status);
}

int Estimation::Message(RegressionStatus status) const {
    if (status == RegressionStatus::NotConverged && !host.IsOleAutomation()) return 0;
    return RegressionMessage(status);
}

std::string Estimation::Describe(RegressionStatus status) const {
    std::string text = details;
    if (status != RegressionStatus::NotConverged && status != RegressionStatus::Singular &&
        status != RegressionStatus::NoLikelihood)
        return text;
    if (status == RegressionStatus::NotConverged)
        text += (text.empty() ? "" : "\n") + Whole(StrRegNotConvergedWay);
    if (state.results.estimate.iterations == 0) return text;
    const std::string last = FormatCount(state.results.estimate.iterations);
    const std::string heading = iterations > state.results.estimate.iterations
                                    ? Filled(StrRegLastIterationsInAll, {last, FormatCount(iterations)})
                                    : Filled(StrRegLastIterations, {last});
    text += (text.empty() ? "" : "\n") + heading + "\n" + lastLines;
    return text;
}

} // namespace

bool PrepareRegression(CAnalysisSupport& host, SharedSettings& shared, RegressionState& state,
                       CAnalysisDialog* window) {
    Preparation preparation{host, shared, state, {}, {}, {}};
    return RunAnalysis(
        host, window, StrReadingDataFile, [&](StatusLine& /*line*/) { return preparation.Compute(); },
        [&] { state.results.Release(); }, RegressionMessage,
        [&](RegressionStatus /*status*/) { return preparation.details; });
}

bool EstimateRegression(CAnalysisSupport& host, RegressionState& state, CAnalysisDialog* window) {
    Estimation estimation{host, state, window, {}, {}, 0};
    return RunAnalysis(
        host, window, StrSorting, [&](StatusLine& line) { return estimation.Compute(line); },
        [&] { state.results.held = false; },
        [&](RegressionStatus status) { return estimation.Message(status); },
        [&](RegressionStatus status) { return estimation.Describe(status); });
}

} // namespace ozm::survival
