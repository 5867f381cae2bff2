#include "module/regression/RegressionModels.h"
#include "module/regression/estimation/ModelTests.h"
#include "module/regression/results/ModelResults.h"
#include "module/regression/results/ParameterTables.h"
#include "module/regression/results/RegOutput.h"
#include "module/resources/Regression.h"
#include "module/resources/RegressionResults.h"
#include "module/resources/Resources.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/ResultTable.h"
#include "module/survdata/StatusLine.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ozm::survival {
namespace {

/// A stratum fitted alone.
struct StratumFit {
    std::int32_t valid = 0;
    std::int32_t uncensored = 0;
    std::vector<double> estimates;
    NewtonEstimate estimate;
    std::string whyNot; ///< empty: it was fitted
    bool stopped = false;
};

std::string WhyNot(const Outcome& outcome, int iterations) {
    switch (outcome.message) {
    case StrRegSingular:
        return Whole(StrRegWhySingular);
    case StrRegNotConverged:
        return Filled(StrRegWhyNotConverged, {FormatCount(iterations)});
    default:
        return Whole(StrRegWhyNoLikelihood);
    }
}

std::vector<std::string> UnboundedNames(const RegressionResults& results, const Diagnosis& diagnosis) {
    std::vector<std::string> names;
    for (const Diagnosis::Unbounded& each : diagnosis.unbounded)
        names.push_back(results.names[each.covariate]);
    for (const std::size_t k : diagnosis.unboundedTogether)
        names.push_back(results.names[k]);
    return names;
}

/// Puts the cases of a block into a sample of their own. False without memory.
bool TakeBlock(const RegReportOf& of, std::size_t begin, std::size_t cases, RegressionSample& into) {
    const RegressionSample& from = of.Results().sample;
    if (!into.Obtain(of.host, cases, from.Covariates())) return false;
    std::vector<double> covariates(from.Covariates());
    for (std::size_t i = begin; i < begin + cases; ++i) {
        for (std::size_t k = 0; k < covariates.size(); ++k)
            covariates[k] = from.Column(k)[i];
        into.Add(from.Times()[i], from.Complete()[i] != 0, from.CaseNumbers()[i], 0, covariates);
    }
    into.Summarise();
    return true;
}

/// Nothing without memory.
std::optional<StratumFit> FitBlock(const RegReportOf& of, std::size_t begin, std::size_t cases) {
    RegressionSample sample;
    if (!TakeBlock(of, begin, cases, sample)) return std::nullopt;
    StratumFit fit;
    fit.valid = static_cast<std::int32_t>(cases);
    fit.uncensored = sample.Events();
    if (fit.uncensored == 0) {
        fit.whyNot = Whole(StrRegWhyNoEvents);
        return fit;
    }
    const RegressionResults& results = of.Results();
    for (std::size_t k = 0; k < sample.Covariates() && results.defined.empty(); ++k)
        if (!(sample.Summary(k).deviation > 0.0)) {
            fit.whyNot = Filled(StrRegWhyNoVariability, {results.names[k]});
            return fit;
        }
    const RegressionModel& model = ModelOf(results.kind);
    EstimationRun run{.host = of.host,
                      .sample = sample,
                      .covariates = results.names,
                      .compiled = results.compiled,
                      .variables = results.covariates,
                      .limits = {results.criterion, of.state.settings.maximumIterations},
                      .parameters = fit.estimates,
                      .estimate = fit.estimate,
                      .show = {},
                      .watch = [&](int, double, std::span<const double>) { return StopRequested(of.host); }};
    const Outcome outcome = model.fit(run);
    if (outcome.ending == Ending::NotSorted) return std::nullopt;
    fit.stopped = outcome.ending == Ending::Stopped;
    if (fit.stopped) return fit;
    const Diagnosis diagnosis = model.diagnose(run, outcome);
    fit.stopped = diagnosis.stopped;
    if (diagnosis.dependence && diagnosis.dependence->on.empty())
        fit.whyNot = Filled(StrRegWhyNoVariability, {results.names[diagnosis.dependence->covariate]});
    else if (!diagnosis.unbounded.empty() || !diagnosis.unboundedTogether.empty())
        fit.whyNot = Filled(StrRegWhyUnbounded, {Listed(UnboundedNames(results, diagnosis), StrAnd)});
    else if (outcome.ending != Ending::Estimated)
        fit.whyNot = WhyNot(outcome, run.limits.most + 1);
    return fit;
}

/// Columns that name a stratum: its code, and its label where there are any.
class StratumColumns {
public:
    StratumColumns(const RegReportOf& of, ResultTable& table)
        : of_(of), code_(table.AddNumbers({"stratum", StrRegColStratum}, CellFormat::general(10))) {
        const RegressionResults& results = of.Results();
        for (const double code : results.strata)
            labels_.push_back(LabelOfCode(of.host, results.stratumVariable, code).value_or(""));
        if (std::ranges::any_of(labels_, [](const std::string& label) { return !label.empty(); }))
            label_ = table.AddTexts({"label", StrRegColLabel});
    }
    void Fill(ResultTable& table, std::size_t row, std::size_t stratum) const {
        table[code_][row] = of_.Results().strata[stratum];
        if (label_) table[*label_][row] = labels_[stratum];
    }

private:
    const RegReportOf& of_;
    std::vector<std::string> labels_;
    ResultTable::Numbers code_;
    std::optional<ResultTable::Texts> label_;
};

OutputResult WriteFits(const RegReportOf& of, const std::vector<StratumFit>& fits) {
    ResultTable table{Whole(StrRegStrataTitle)};
    const StratumColumns strata(of, table);
    const auto valid = table.AddIntegers({"valid", StrRegColValid});
    const auto uncensored = table.AddIntegers(
        {"uncensored", StrRegColUncensored1, StrRegColUncensored2, Whole(StrRegUncensoredInFull)});
    const auto likelihood = table.AddNumbers(
        {"logLikelihood", StrRegColLikelihood1, StrRegColLikelihood2, Whole(StrRegLikelihoodInFull)},
        CellFormat::general(10));
    const auto iterations = table.AddNumbers(
        {"iterations", StrRegColIterations, 0, Whole(StrRegIterationsInFull)}, CellFormat::integer());
    const bool allFitted = std::ranges::all_of(fits, &std::string::empty, &StratumFit::whyNot);
    std::optional<ResultTable::Texts> why;
    if (!allFitted) why = table.AddTexts({"whyNot", StrRegColWhyNot});
    if (!table.AddRows(of.host, fits.size())) return OutputResult::Failed(StrRegNoMemory);
    for (std::size_t g = 0; g < fits.size(); ++g) {
        if (ResultTable::StopsAt(of.host, g)) return OutputResult::NotMade();
        strata.Fill(table, g, g);
        table[valid][g] = fits[g].valid;
        table[uncensored][g] = fits[g].uncensored;
        if (why) table[*why][g] = fits[g].whyNot;
        if (!fits[g].whyNot.empty()) continue;
        table[likelihood][g] = fits[g].estimate.logLikelihood;
        table[iterations][g] = fits[g].estimate.iterations;
    }
    return table.Write(of.host);
}

OutputResult WriteTest(const RegReportOf& of, const std::vector<StratumFit>& fits) {
    const RegressionResults& results = of.Results();
    const bool allFitted = std::ranges::all_of(fits, &std::string::empty, &StratumFit::whyNot);
    ResultTable table{Whole(StrRegStrataTestTitle)};
    const CellFormat format = CellFormat::general(10);
    const auto sum =
        table.AddNumbers({"sumOfStrata", StrRegColSum1, StrRegColSum2, Whole(StrRegSumInFull)}, format);
    const auto common = table.AddNumbers(
        {"commonFit", StrRegColCommon1, StrRegColCommon2, Whole(StrRegCommonInFull)}, format);
    const TestColumns test(table);
    if (!table.AddRows(of.host, 1)) return OutputResult::Failed(StrRegNoMemory);
    table.NameRow(Whole(StrRegRowEqual));
    table[common][0] = results.estimate.logLikelihood;
    if (allFitted && fits.size() > 1) {
        double likelihoods = 0.0;
        for (const StratumFit& fit : fits)
            likelihoods += fit.estimate.logLikelihood;
        table[sum][0] = likelihoods;
        const auto df = static_cast<int>((fits.size() - 1) * results.Parameters());
        test.Fill(table, 0, ChiSquareOf(2.0 * (likelihoods - results.estimate.logLikelihood), df));
        table.AddFootnote(Whole(StrRegNoteStrataTest));
    } else {
        table.AddFootnote(Whole(allFitted ? StrRegNoteOneStratum : StrRegNoteNoStrataTest));
    }
    return table.Write(of.host);
}

/// The parameters of each stratum that was fitted.
OutputResult WriteParametersOf(const RegReportOf& of, const std::vector<StratumFit>& fits) {
    const RegressionResults& results = of.Results();
    const auto fitted =
        static_cast<std::size_t>(std::ranges::count(fits, std::string{}, &StratumFit::whyNot));
    if (fitted == 0) return {};
    ResultTable table{Whole(StrRegStrataParametersTitle)};
    const StratumColumns strata(of, table);
    const auto variable = table.AddTexts({"variable", StrRegColVariable});
    ParameterColumns columns(table, of.state.output.confidenceLevel, ResultsOf(results.kind));
    if (!table.AddRows(of.host, fitted * results.Parameters())) return OutputResult::Failed(StrRegNoMemory);
    std::size_t row = 0;
    for (std::size_t g = 0; g < fits.size(); ++g) {
        if (!fits[g].whyNot.empty()) continue;
        for (std::size_t k = 0; k < results.Parameters(); ++k, ++row) {
            if (ResultTable::StopsAt(of.host, row)) return OutputResult::NotMade();
            strata.Fill(table, row, g);
            table[variable][row] = results.names[k];
            columns.Fill(table, row, fits[g].estimates[k], fits[g].estimate.covariance(k, k),
                         ParameterRole::Coefficient);
        }
    }
    columns.AddNotes(table);
    return table.Write(of.host);
}

} // namespace

OutputResult WriteStratifiedAnalysis(const RegReportOf& of) {
    const RegressionResults& results = of.Results();
    if (!results.Stratified()) return OutputResult::Failed(StrRegNotStratified);
    const StatusLine line(of.host, StrRegFitting);
    const auto blocks = results.sample.Ordered().blocks;
    std::vector<StratumFit> fits(blocks.size());
    std::size_t begin = 0;
    for (std::size_t block = 0; block < blocks.size(); ++block) {
        if (StopRequested(of.host)) return OutputResult::NotMade();
        const auto cases = static_cast<std::size_t>(blocks[block]);
        std::optional<StratumFit> fit = FitBlock(of, begin, cases);
        if (!fit) return OutputResult::Failed(StrRegNoMemory);
        if (fit->stopped) return OutputResult::NotMade();
        fits[StratumOfBlock(results, block)] = std::move(*fit);
        begin += cases;
    }
    if (const OutputResult written = WriteFits(of, fits); !written.made) return written;
    if (const OutputResult written = WriteTest(of, fits); !written.made) return written;
    return of.state.settings.differentBaselines ? OutputResult{} : WriteParametersOf(of, fits);
}

} // namespace ozm::survival
