#include "module/regression/cox/CoxResiduals.h"
#include "module/regression/results/CoxOutput.h"
#include "module/regression/results/FiniteCells.h"
#include "module/resources/Regression.h"
#include "module/resources/RegressionResults.h"
#include "module/resources/Resources.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/ResultTable.h"
#include "module/survdata/ShowChart.h"
#include "module/survdata/StatusLine.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

namespace ozm::survival {
namespace {

ChartSeries Marks(int legend, ChartSeries::Role role, ChartSeries::Marker marker) {
    ChartSeries series;
    series.legend = Text(legend);
    series.style = ChartSeries::Style::Markers;
    series.role = role;
    series.marker = marker;
    return series;
}

} // namespace

OutputResult PlotCoxResiduals(const RegReportOf& of) {
    const StatusLine line(of.host, StrRegFitting);
    const OrderedSample sample = of.Results().sample.Ordered();
    const RiskSets sets = RiskSetsOf(of.Results());
    const CoxResiduals residuals = ComputeCoxResiduals(sample, sets);
    ChartSeries events = Marks(StrCoxLegendEvents, ChartSeries::Role::Observed, ChartSeries::Marker::Circle);
    ChartSeries censored =
        Marks(StrCoxLegendCensored, ChartSeries::Role::Observed, ChartSeries::Marker::Plus);
    censored.group = 1;
    for (std::size_t i = 0; i < sample.cases; ++i) {
        ChartSeries& series = sample.complete[i] != 0 ? events : censored;
        series.x.push_back(sets.Predictors()[i]);
        series.y.push_back(residuals.martingale[i]);
    }
    CChartInfo chart;
    chart.kind = CChartInfo::Kind::Scatter;
    chart.title = Text(StrCoxMartingaleTitle);
    chart.xAxis.title = Text(StrCoxAxisPredictor);
    chart.yAxis.title = Text(StrCoxAxisMartingale);
    chart.notes.push_back(Whole(StrCoxNoteMartingale));
    chart.series.push_back(std::move(events));
    if (!censored.x.empty()) chart.series.push_back(std::move(censored));
    return ShowChart(of.host, chart);
}

OutputResult WriteCoxResiduals(const RegReportOf& of) {
    static constexpr std::array<std::string_view, 2> marks{"", "+"};
    const StatusLine line(of.host, StrPrinting);
    const OrderedSample sample = of.Results().sample.Ordered();
    const auto cases = of.Results().sample.CaseNumbers();
    const RiskSets sets = RiskSetsOf(of.Results());
    const CoxResiduals residuals = ComputeCoxResiduals(sample, sets);
    const CellFormat format = CellFormat::general(8);
    ResultTable table{Whole(StrCoxResidualsTitle)};
    table.AddNote(Whole(StrCoxNoteCensored));
    table.AddFootnote(Whole(StrCoxNotePredictor));
    table.AddFootnote(Whole(StrCoxNoteMartingale));
    const auto number = table.AddIntegers({"caseNumber", StrCoxColCase1, StrCoxColNumber});
    const auto time = table.AddNumbers({"time", StrCoxColTime1, StrCoxColTime2}, format);
    const auto mark = table.AddMarks({"censored", StrCoxColCensored}, marks);
    const auto predictor = table.AddNumbers(
        {"linearPredictor", StrCoxColPredictor1, StrCoxColPredictor2, Whole(StrCoxPredictorInFull)}, format);
    const auto martingale = table.AddNumbers(
        {"martingale", StrCoxColMartingale1, StrCoxColResidual2, Whole(StrCoxMartingaleInFull)}, format);
    const auto deviance = table.AddNumbers({"deviance", StrCoxColDeviance1, StrCoxColResidual2}, format);
    if (!table.AddRows(of.host, sample.cases)) return OutputResult::Failed(StrRegNoMemory);
    std::vector<std::size_t> order(sample.cases);
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::sort(order, [&](std::size_t one, std::size_t other) {
        return std::pair{cases[one], one} < std::pair{cases[other], other};
    });
    FiniteCells cells;
    for (std::size_t row = 0; row < order.size(); ++row) {
        if (ResultTable::StopsAt(of.host, row)) return OutputResult::NotMade();
        const std::size_t i = order[row];
        table[number][row] = cases[i];
        table[time][row] = sample.times[i];
        table[mark][row] = sample.complete[i] != 0 ? 0 : 1;
        cells.Put(table, predictor, row, sets.Predictors()[i]);
        cells.Put(table, martingale, row, residuals.martingale[i]);
        cells.Put(table, deviance, row, residuals.deviance[i]);
    }
    cells.AddNote(table);
    return table.Write(of.host);
}

} // namespace ozm::survival
