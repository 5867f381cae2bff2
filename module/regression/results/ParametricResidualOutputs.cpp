#include "module/regression/parametric/EstimateSteps.h"
#include "module/regression/results/FiniteCells.h"
#include "module/regression/results/ParametricOutput.h"
#include "module/regression/results/ResidualChart.h"
#include "module/resources/Regression.h"
#include "module/resources/RegressionResults.h"
#include "module/resources/Resources.h"
#include "module/survdata/NormalQuantile.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/ResultTable.h"
#include "module/survdata/ShowChart.h"
#include "module/survdata/StatusLine.h"

#include <cmath>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ozm::survival {
namespace {

/// Points with the line y = x through their range, from `origin` if that is further left.
CChartInfo AgainstIdentity(const ChartTitles& titles, ChartSeries points, double origin) {
    points.legend = Text(StrRegLegendEvents);
    points.style = ChartSeries::Style::Markers;
    points.role = ChartSeries::Role::Observed;
    points.marker = ChartSeries::Marker::Circle;
    ChartSeries line;
    line.legend = Text(StrParLegendModel);
    line.group = 1;
    line.x = {origin, origin};
    for (const double x : points.x) {
        line.x[0] = std::min(line.x[0], x);
        line.x[1] = std::max(line.x[1], x);
    }
    line.y = line.x;
    CChartInfo chart;
    chart.kind = CChartInfo::Kind::Scatter;
    chart.title = Text(titles.chart);
    chart.xAxis.title = Text(titles.x);
    chart.yAxis.title = Text(titles.y);
    chart.series.push_back(std::move(line));
    chart.series.push_back(std::move(points));
    return chart;
}

void Add(ChartSeries& series, double x, double y) {
    if (!std::isfinite(x) || !std::isfinite(y)) return;
    series.x.push_back(x);
    series.y.push_back(y);
}

int PredictorAxis(RegressionKind kind) {
    if (kind == RegressionKind::Exponential) return StrParAxisMeanLog;
    return kind == RegressionKind::Lognormal ? StrParAxisLocationLog : StrParAxisLocation;
}

std::string NoteOnStandardised(RegressionKind kind) {
    return Filled(StrParNoteStandardised,
                  {Whole(kind == RegressionKind::Lognormal ? StrParLogTimeInWords : StrParTimeInWords)});
}

} // namespace

OutputResult PlotCoxSnellHazard(const RegReportOf& of) {
    const StatusLine line(of.host, StrRegFitting);
    const ParametricResiduals residuals = ResidualsOf(of.Results());
    ChartSeries points;
    for (const EstimateStep& step : EstimateSteps(residuals.coxSnell, of.Results().sample.Complete()))
        Add(points, step.at, step.hazard);
    CChartInfo chart =
        AgainstIdentity({StrParCoxSnellTitle, StrParAxisCoxSnell, StrParAxisHazard}, std::move(points), 0.0);
    chart.notes.emplace_back(Text(StrParNoteCoxSnell));
    chart.notes.emplace_back(Text(StrParNoteCoxSnellPlot));
    return ShowChart(of.host, chart);
}

OutputResult PlotNormalScores(const RegReportOf& of) {
    const StatusLine line(of.host, StrRegFitting);
    const ParametricResiduals residuals = ResidualsOf(of.Results());
    ChartSeries points;
    for (const EstimateStep& step : EstimateSteps(residuals.score, of.Results().sample.Complete()))
        Add(points, step.at, -NormalQuantile(0.5 * (step.before + step.survival)));
    const double origin = points.x.empty() ? 0.0 : points.x.front();
    CChartInfo chart = AgainstIdentity({StrParNormalPlotTitle, StrParAxisStandardised, StrParAxisNormal},
                                       std::move(points), origin);
    chart.notes.push_back(NoteOnStandardised(of.Results().kind));
    chart.notes.emplace_back(Text(StrParNoteNormalPlot));
    return ShowChart(of.host, chart);
}

OutputResult PlotParametricResiduals(const RegReportOf& of) {
    const StatusLine line(of.host, StrRegFitting);
    const RegressionResults& results = of.Results();
    const ParametricResiduals residuals = ResidualsOf(results);
    const bool exponential = results.kind == RegressionKind::Exponential;
    const int axis = PredictorAxis(results.kind);
    CChartInfo chart = ResidualChart(
        exponential ? ChartTitles{StrParCoxSnellVsTitle, axis, StrParAxisCoxSnell}
                    : ChartTitles{StrParStandardisedVsTitle, axis, StrParAxisStandardised},
        residuals.location, exponential ? residuals.coxSnell : residuals.score, results.sample.Complete());
    chart.notes.push_back(exponential ? Whole(StrParNoteCoxSnell) : NoteOnStandardised(results.kind));
    chart.notes.emplace_back(Text(StrParNotePattern));
    return ShowChart(of.host, chart);
}

OutputResult WriteParametricResiduals(const RegReportOf& of) {
    const StatusLine line(of.host, StrPrinting);
    const RegressionResults& results = of.Results();
    const RegressionSample& sample = results.sample;
    const ParametricResiduals residuals = ResidualsOf(results);
    const bool standardised = FittedOf(results).HasSigma();
    const std::vector<double>& ofEstimate = standardised ? residuals.score : residuals.coxSnell;
    const std::vector<EstimateStep> steps = EstimateSteps(ofEstimate, sample.Complete());
    const CellFormat format = CellFormat::general(8);
    ResultTable table{Whole(StrRegResidualsTitle)};
    table.AddNote(Whole(StrRegNoteCensored));
    table.AddFootnote(Whole(StrParNotePredictor));
    if (standardised) table.AddFootnote(NoteOnStandardised(results.kind));
    table.AddFootnote(Whole(StrParNoteCoxSnell));
    table.AddFootnote(Whole(StrParNoteMartingale));
    const auto number = table.AddIntegers({"caseNumber", StrRegColCase1, StrRegColCaseNumber});
    const auto time = table.AddNumbers({"time", StrRegColTime1, StrRegColTime2}, format);
    const auto mark = table.AddMarks({"censored", StrRegColCensored}, censoredMarks);
    const auto predictor = table.AddNumbers(
        {"linearPredictor", StrRegColPredictor1, StrRegColPredictor2, Whole(StrRegPredictorInFull)}, format);
    std::optional<ResultTable::Numbers> score;
    if (standardised)
        score = table.AddNumbers(
            {"standardised", StrParColStandardised1, StrRegColResidual2, Whole(StrParStandardisedInFull)},
            format);
    const auto coxSnell = table.AddNumbers(
        {"coxSnell", StrParColCoxSnell1, StrRegColResidual2, Whole(StrParCoxSnellInFull)}, format);
    const auto martingale = table.AddNumbers(
        {"martingale", StrRegColMartingale1, StrRegColResidual2, Whole(StrRegMartingaleInFull)}, format);
    const auto deviance = table.AddNumbers({"deviance", StrRegColDeviance1, StrRegColResidual2}, format);
    const auto estimate = standardised
                              ? table.AddNumbers({"productLimit", StrParColEstimate1, StrParColOfResiduals2,
                                                  Whole(StrParEstimateInFull)},
                                                 format)
                              : table.AddNumbers({"cumulativeHazard", StrParColNelson1, StrParColOfResiduals2,
                                                  Whole(StrParNelsonInFull)},
                                                 format);
    if (!table.AddRows(of.host, sample.Cases())) return OutputResult::Failed(StrRegNoMemory);
    const std::vector<std::size_t> order = InOrderOfCases(sample.CaseNumbers());
    FiniteCells cells;
    for (std::size_t row = 0; row < order.size(); ++row) {
        if (ResultTable::StopsAt(of.host, row)) return OutputResult::NotMade();
        const std::size_t i = order[row];
        const EstimateStep* const step = StepAt(steps, ofEstimate[i]);
        table[number][row] = sample.CaseNumbers()[i];
        table[time][row] = sample.Times()[i];
        table[mark][row] = sample.Complete()[i] != 0 ? 0 : 1;
        cells.Put(table, predictor, row, residuals.location[i]);
        if (score) cells.Put(table, *score, row, residuals.score[i]);
        cells.Put(table, coxSnell, row, residuals.coxSnell[i]);
        cells.Put(table, martingale, row, residuals.martingale[i]);
        cells.Put(table, deviance, row, residuals.deviance[i]);
        if (standardised)
            table[estimate][row] = step != nullptr ? step->survival : 1.0;
        else
            table[estimate][row] = step != nullptr ? step->hazard : 0.0;
    }
    cells.AddNote(table);
    return table.Write(of.host);
}

} // namespace ozm::survival
