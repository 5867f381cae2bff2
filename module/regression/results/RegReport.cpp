#include "module/regression/estimation/ModelTests.h"
#include "module/regression/results/ModelResults.h"
#include "module/regression/results/ParameterTables.h"
#include "module/regression/results/RegOutput.h"
#include "module/resources/Regression.h"
#include "module/resources/RegressionResults.h"
#include "module/resources/Resources.h"
#include "module/resources/TimeDependent.h"
#include "module/survdata/InputHeader.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/ResultTable.h"
#include "module/survdata/StatusLine.h"

#include <cmath>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ozm::survival {
namespace {

std::vector<FitMeasure> MeasuresOf(const RegReportOf& of) {
    const ModelResults& model = ResultsOf(of.Results().kind);
    return model.measures == nullptr ? std::vector<FitMeasure>{} : model.measures(of);
}

/// What the summary says of the fit.
struct Fit {
    ModelTests tests;
    std::vector<FitMeasure> measures;
    std::size_t steepest = 0; ///< the parameter with the largest element of the gradient

    explicit Fit(const RegReportOf& of)
        : tests(TestModel(std::span{of.Results().estimates}.first(of.Results().names.size()),
                          of.Results().estimate)),
          measures(MeasuresOf(of)) {
        const ParameterVector& gradient = of.Results().estimate.gradient;
        for (std::size_t k = 1; k < of.Results().Parameters(); ++k)
            if (std::abs(gradient[k]) > std::abs(gradient[steepest])) steepest = k;
    }
};

std::string Line(int id, const std::string& value) {
    return Whole(id) + value;
}

std::string NumberOrNot(double value, int digits) {
    return std::isfinite(value) ? FormatNumber(value, digits) : Whole(StrRegNotComputed);
}

/// A list in lines of a page's width, the later ones indented.
void AddList(std::vector<std::string>& lines, std::string line, std::span<const std::string> items) {
    constexpr std::size_t width = 78;
    for (std::size_t i = 0; i < items.size(); ++i) {
        const std::string item = items[i] + (i + 1 < items.size() ? ", " : "");
        if (i > 0 && line.size() + item.size() > width) lines.push_back(std::exchange(line, "    "));
        line += item;
    }
    lines.push_back(std::move(line));
}

std::string Share(std::int32_t part, std::size_t whole) {
    return FormatCount(part) +
           Filled(StrRegPercent, {FormatFixed(100.0 * part / static_cast<double>(whole), 2)});
}

void AddVariables(const RegReportOf& of, std::vector<std::string>& lines) {
    const RegressionResults& results = of.Results();
    lines.push_back(Line(StrRegTimes, TimesName(of.host, of.shared)));
    lines.push_back(Line(StrRegCensoring, VariableName(of.host, of.shared.First(ListCensoring))));
    AddList(lines, Filled(StrRegCovariates, {FormatCount(static_cast<long long>(results.names.size()))}),
            results.names);
    for (const DefinedCovariate& each : results.defined)
        lines.push_back(Filled(StrTimeDefined, {each.name, each.expression}));
    if (results.Stratified())
        lines.push_back(Line(StrRegStratified, VariableName(of.host, results.stratumVariable)) +
                        Line(StrRegSameBeta, FormatCount(static_cast<long long>(results.strata.size()))));
}

void AddCounts(const RegReportOf& of, std::vector<std::string>& lines) {
    const RegressionResults& results = of.Results();
    const auto valid = static_cast<std::int32_t>(results.sample.Cases());
    const std::int32_t uncensored = results.sample.Events();
    lines.push_back(Line(StrRegValid, FormatCount(valid)));
    lines.push_back(Line(StrRegUncensored, Share(uncensored, results.sample.Cases())) + "   " +
                    Line(StrRegCensored, Share(valid - uncensored, results.sample.Cases())));
    if (const auto leftOut = results.reading.LeftOut(); leftOut > 0)
        lines.push_back(Line(StrRegLeftOut, FormatCount(leftOut)));
    std::vector<std::string> missing;
    for (std::size_t k = 0; k < results.missing.size(); ++k)
        if (results.missing[k] > 0)
            missing.push_back(results.variableNames[k] + " " + FormatCount(results.missing[k]));
    if (!missing.empty())
        AddList(lines, Whole(results.meansSubstituted ? StrRegReplaced : StrRegMissingLeftOut), missing);
}

std::string TestLine(int id, const ChiSquareStatistic& test) {
    if (!std::isfinite(test.value)) return Line(id, Whole(StrRegNotComputed));
    return Line(id, FormatNumber(test.value)) +
           Filled(StrRegDfAndP, {FormatCount(test.df), FormatProbability(test.p)});
}

std::vector<std::string> SummaryLines(const RegReportOf& of, const Fit& fit) {
    const RegressionResults& results = of.Results();
    const NewtonEstimate& estimate = results.estimate;
    const ModelResults& model = ResultsOf(results.kind);
    std::vector<std::string> lines;
    AddVariables(of, lines);
    AddCounts(of, lines);
    if (model.lineOfModel != 0) lines.emplace_back(Text(model.lineOfModel));
    lines.push_back(Line(StrRegCriterion, FormatNumber(results.criterion, 7)) + "   " +
                    Line(StrRegIterations, FormatCount(estimate.iterations)));
    lines.push_back(Line(StrRegFinal, FormatNumber(estimate.logLikelihood, 10)));
    lines.push_back(Line(StrRegNull, FormatNumber(estimate.nullLogLikelihood, 10)));
    if (model.lineOfScale != 0) lines.emplace_back(Text(model.lineOfScale));
    lines.push_back(TestLine(StrRegChiSquare, fit.tests.likelihoodRatio));
    if (model.hasScoreTest) lines.push_back(TestLine(StrRegScore, fit.tests.score));
    lines.push_back(TestLine(StrRegWald, fit.tests.wald));
    for (const FitMeasure& measure : fit.measures)
        lines.push_back(Line(measure.line, NumberOrNot(measure.value, measure.digits)));
    lines.push_back(Line(StrRegGradient, FormatNumber(estimate.gradient[fit.steepest])) +
                    Filled(StrRegGradientOf, {results.parameterNames[fit.steepest]}));
    if (const auto far = FarFromMaximum(results); !far.empty()) AddList(lines, Whole(StrRegFar), far);
    return lines;
}

/// Each stratum with its counts.
void WriteStrata(const RegReportOf& of) {
    const RegressionResults& results = of.Results();
    if (!results.Stratified()) return;
    const OrderedSample sample = results.sample.Ordered();
    std::vector<std::string> lines(sample.blocks.size());
    std::size_t i = 0;
    for (std::size_t block = 0; block < sample.blocks.size(); ++block) {
        int events = 0;
        for (const std::size_t end = i + static_cast<std::size_t>(sample.blocks[block]); i < end; ++i)
            events += sample.complete[i];
        const std::size_t stratum = StratumOfBlock(results, block);
        lines[stratum] = Line(StrRegStratum, StratumName(of, stratum)) +
                         Filled(StrRegStratumCases, {FormatCount(sample.blocks[block]), FormatCount(events)});
    }
    for (const std::string& line : lines)
        WriteLine(of.host, line);
}

OutputResult WriteTests(const RegReportOf& of, const ModelTests& tests) {
    std::vector<std::pair<int, ChiSquareStatistic>> rows{{StrRegRowLikelihood, tests.likelihoodRatio}};
    if (ResultsOf(of.Results().kind).hasScoreTest) rows.emplace_back(StrRegRowScore, tests.score);
    rows.emplace_back(StrRegRowWald, tests.wald);
    ResultTable table{Whole(StrRegTestsTitle)};
    table.RepeatsReport();
    const TestColumns columns(table);
    if (!table.AddRows(of.host, rows.size())) return OutputResult::Failed(StrRegNoMemory);
    bool all = true;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        table.NameRow(Whole(rows[row].first));
        columns.Fill(table, row, rows[row].second);
        all = all && std::isfinite(rows[row].second.value);
    }
    if (!all) table.AddFootnote(Whole(StrRegNoteSingular));
    return table.Write(of.host);
}

OutputResult WriteFit(const RegReportOf& of, const Fit& fit) {
    const RegressionResults& results = of.Results();
    const NewtonEstimate& estimate = results.estimate;
    const auto valid = static_cast<double>(results.sample.Cases());
    const double uncensored = results.sample.Events();
    std::vector<std::pair<int, double>> rows;
    rows.emplace_back(StrRegRowValid, valid);
    rows.emplace_back(StrRegRowUncensored, uncensored);
    rows.emplace_back(StrRegRowCensored, valid - uncensored);
    rows.emplace_back(StrRegRowLeftOut, static_cast<double>(results.reading.LeftOut()));
    if (results.Stratified()) rows.emplace_back(StrRegRowStrata, static_cast<double>(results.strata.size()));
    rows.emplace_back(StrRegRowFinal, estimate.logLikelihood);
    rows.emplace_back(StrRegRowNull, estimate.nullLogLikelihood);
    rows.emplace_back(StrRegRowCriterion, results.criterion);
    rows.emplace_back(StrRegRowIterations, estimate.iterations);
    rows.emplace_back(StrRegRowGradient, estimate.gradient[fit.steepest]);
    for (const FitMeasure& measure : fit.measures)
        rows.emplace_back(measure.row, measure.value);
    ResultTable table{Whole(StrRegFitTitle)};
    table.RepeatsReport();
    const auto value = table.AddNumbers({"value", StrRegColValue}, CellFormat::general(10));
    if (!table.AddRows(of.host, rows.size())) return OutputResult::Failed(StrRegNoMemory);
    for (std::size_t row = 0; row < rows.size(); ++row) {
        table.NameRow(Whole(rows[row].first));
        table[value][row] = rows[row].second;
    }
    if (const int scale = ResultsOf(results.kind).lineOfScale; scale != 0) table.AddFootnote(Whole(scale));
    return table.Write(of.host);
}

} // namespace

CChartInfo SurvivalChart(CChartInfo::Kind kind, int title) {
    CChartInfo chart;
    chart.kind = kind;
    chart.title = Text(title);
    chart.xAxis.title = Text(StrRegAxisTime);
    chart.yAxis.title = Text(StrRegAxisSurviving);
    chart.yAxis.min = 0.0;
    chart.yAxis.max = 1.0;
    return chart;
}

std::string StratumName(const RegReportOf& of, std::size_t stratum) {
    return MeaningOfCode(of.host, of.Results().stratumVariable, of.Results().strata[stratum]);
}

std::vector<std::string> RegSummaryLines(const RegReportOf& of) {
    return SummaryLines(of, Fit(of));
}

OutputResult WriteRegSummary(const RegReportOf& of) {
    const StatusLine line(of.host, StrPrinting);
    const Fit fit(of);
    OpenReport(of.host, of.shared, ResultsOf(of.Results().kind).title);
    for (const std::string& each : SummaryLines(of, fit))
        WriteLine(of.host, each);
    of.host.newline(1);
    WriteInputHeader(of.host, of.shared);
    WriteStrata(of);
    of.host.type();
    if (const OutputResult written = WriteTests(of, fit.tests); !written.made) return written;
    if (const OutputResult written = WriteFit(of, fit); !written.made) return written;
    return WriteParameters(of);
}

} // namespace ozm::survival
