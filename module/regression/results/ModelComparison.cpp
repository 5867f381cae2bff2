#include "module/regression/RegressionModels.h"
#include "module/regression/estimation/ModelTests.h"
#include "module/regression/results/FiniteCells.h"
#include "module/regression/results/ParameterTables.h"
#include "module/regression/results/ParametricOutput.h"
#include "module/resources/Regression.h"
#include "module/resources/RegressionResults.h"
#include "module/resources/Resources.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/ResultTable.h"
#include "module/survdata/StatusLine.h"
#include "module/survdata/StopTest.h"

#include <algorithm>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace ozm::survival {
namespace {

/// As many as an estimation may have that was continued: here nobody is asked for more.
constexpr int mostIterations = 500;
constexpr RegressionKind kinds[] = {RegressionKind::Exponential, RegressionKind::Lognormal,
                                    RegressionKind::Normal};

/// A model fitted to the cases, or why it was not.
struct ComparedModel {
    const RegressionModel* model = nullptr;
    double logLikelihood = std::numeric_limits<double>::quiet_NaN(); ///< on the scale of time
    std::size_t parameters = 0;
    ChiSquareStatistic test{};
    std::string whyNot;
    bool offMaximum = false; ///< the iteration ended before it
    bool stopped = false;

    [[nodiscard]] double Criterion() const { return Akaike(logLikelihood, parameters); }
};

/// The cases of the results in a sample of their own, as an estimation may put them into another order. False
/// without memory.
bool Copy(const RegReportOf& of, RegressionSample& into) {
    const RegressionSample& from = of.Results().sample;
    if (!into.Obtain(of.host, from.Cases(), from.Covariates())) return false;
    std::vector<double> row(from.Covariates());
    for (std::size_t i = 0; i < from.Cases(); ++i) {
        for (std::size_t k = 0; k < row.size(); ++k)
            row[k] = from.Column(k)[i];
        into.Add(from.Times()[i], from.Complete()[i] != 0, from.CaseNumbers()[i], 0, row);
    }
    into.Summarise();
    return true;
}

void Take(ComparedModel& compared, std::span<const double> parameters, const NewtonEstimate& estimate,
          const RegressionSample& sample) {
    const auto df = static_cast<int>(sample.Covariates());
    compared.logLikelihood = estimate.logLikelihood;
    if (compared.model->kind == RegressionKind::Lognormal) compared.logLikelihood -= SumOfLogTimes(sample);
    compared.offMaximum = !ParametersOffTheMaximum(parameters, estimate).empty();
    compared.test = ChiSquareOf(2.0 * (estimate.logLikelihood - estimate.nullLogLikelihood), df);
}

/// The message that there would be for the model alone, in sentences.
std::string WhyNot(const RegressionModel& model, const EstimationRun& run, const Outcome& outcome) {
    if (outcome.ending == Ending::UsedUp)
        return Filled(StrRegWhyNotConverged, {FormatCount(run.limits.most)});
    std::vector<std::string> sentences{Trimmed(outcome.message)};
    if (!outcome.detail.empty()) sentences.push_back(outcome.detail);
    for (const std::string& reason : model.explain(run, outcome))
        sentences.push_back(reason);
    std::string text;
    for (const std::string& sentence : sentences) {
        if (!text.empty()) text += text.ends_with('.') || text.ends_with(':') ? " " : ". ";
        text += sentence;
    }
    return text;
}

ComparedModel Fit(const RegReportOf& of, RegressionKind kind, RegressionSample& sample) {
    const RegressionResults& results = of.Results();
    ComparedModel compared;
    compared.model = &ModelOf(kind);
    compared.parameters = compared.model->Parameters(results.names.size());
    if (kind == results.kind) {
        Take(compared, results.estimates, results.estimate, results.sample);
        return compared;
    }
    std::vector<double> parameters;
    NewtonEstimate estimate;
    EstimationRun run{
        .host = of.host,
        .sample = sample,
        .covariates = results.names,
        .compiled = results.compiled,
        .variables = results.covariates,
        .limits = {results.criterion, std::max(mostIterations, int{of.state.settings.maximumIterations})},
        .parameters = parameters,
        .estimate = estimate,
        .show = {},
        .watch = [&](int, double, std::span<const double>) { return StopRequested(of.host); }};
    const Outcome outcome = compared.model->fit(run);
    compared.stopped = outcome.ending == Ending::Stopped;
    if (outcome.ending == Ending::Estimated)
        Take(compared, parameters, estimate, sample);
    else if (outcome.ending != Ending::Stopped)
        compared.whyNot = WhyNot(*compared.model, run, outcome);
    return compared;
}

OutputResult Write(const RegReportOf& of, const std::vector<ComparedModel>& models) {
    const CellFormat format = CellFormat::general(10);
    ResultTable table{Whole(StrParComparisonTitle)};
    table.IsEssential();
    table.AddFootnote(Whole(StrParNoteComparison));
    const auto likelihood = table.AddNumbers(
        {"logLikelihood", StrRegLikelihoodInFull, StrParColLikelihood2, Whole(StrParComparedInFull)}, format);
    const auto parameters = table.AddNumbers(
        {"parameters", StrParColParameters, 0, Whole(StrParRowParameters)}, CellFormat::integer());
    const auto akaike =
        table.AddNumbers({"akaike", StrParColAkaike1, StrParColAkaike2, Whole(StrParAkaikeInFull)}, format);
    const auto difference = table.AddNumbers(
        {"difference", StrParColDifference1, StrParColDifference2, Whole(StrParDifferenceInFull)}, format);
    const TestColumns tests(table);
    const auto whyNot = table.AddTexts({"whyNot", StrParColNotFitted});
    if (!table.AddRows(of.host, models.size())) return OutputResult::Failed(StrRegNoMemory);
    double best = std::numeric_limits<double>::infinity();
    for (const ComparedModel& each : models)
        best = std::min(best, each.whyNot.empty() ? each.Criterion() : best);
    FiniteCells cells;
    for (std::size_t row = 0; row < models.size(); ++row) {
        const ComparedModel& each = models[row];
        table.NameRow(Whole(each.model->name));
        table[parameters][row] = static_cast<double>(each.parameters);
        table[whyNot][row] = each.whyNot;
        if (!each.whyNot.empty()) continue;
        cells.Put(table, likelihood, row, each.logLikelihood);
        cells.Put(table, akaike, row, each.Criterion());
        cells.Put(table, difference, row, each.Criterion() - best);
        tests.Fill(table, row, each.test);
    }
    std::vector<std::string> off;
    for (const ComparedModel& each : models)
        if (each.offMaximum) off.push_back(Whole(each.model->name));
    if (!off.empty()) table.AddFootnote(Filled(StrParNoteOffMaximum, {Listed(off, StrAnd)}));
    cells.AddNote(table);
    return table.Write(of.host);
}

} // namespace

OutputResult WriteComparison(const RegReportOf& of) {
    const StatusLine line(of.host, StrRegFitting);
    RegressionSample sample;
    if (!Copy(of, sample)) return OutputResult::Failed(StrRegNoMemory);
    std::vector<ComparedModel> models;
    for (const RegressionKind kind : kinds) {
        models.push_back(Fit(of, kind, sample));
        if (models.back().stopped) return OutputResult::NotMade();
    }
    return Write(of, models);
}

} // namespace ozm::survival
