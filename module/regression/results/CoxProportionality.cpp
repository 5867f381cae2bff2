#include "module/regression/cox/ProportionalityTest.h"
#include "module/regression/results/CoxOutput.h"
#include "module/regression/results/ParameterTables.h"
#include "module/resources/Regression.h"
#include "module/resources/RegressionResults.h"
#include "module/resources/Resources.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/ResultTable.h"
#include "module/survdata/ShowChart.h"
#include "module/survdata/StatusLine.h"
#include "module/survdata/StopTest.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

namespace ozm::survival {
namespace {

/// The residuals of all events, their times' ranks, and the test on these.
struct Residuals {
    OrderedSample sample;
    SchoenfeldResiduals scaled;
    std::vector<double> ranks;
    ProportionalityTest test;

    explicit Residuals(const RegressionResults& results) : sample(results.sample.Ordered()) {
        const SchoenfeldResiduals plain = ComputeSchoenfeldResiduals(sample, RiskSetsOf(results));
        test = TestProportionality(sample, plain, results.estimate.covariance);
        ranks = RanksOfDeaths(sample, plain);
        scaled = Scaled(plain, results.estimate.covariance, results.estimates);
    }
};

/// The least-squares line of a covariate's residuals by rank, at the first and the last rank. Level where all
/// ranks are one.
ChartSeries Trend(const Residuals& of, std::size_t k) {
    const auto n = static_cast<double>(of.ranks.size());
    const double middle = std::accumulate(of.ranks.begin(), of.ranks.end(), 0.0) / n;
    double mean = 0.0;
    for (std::size_t d = 0; d < of.ranks.size(); ++d)
        mean += of.scaled.Row(d)[k] / n;
    double products = 0.0;
    double squares = 0.0;
    for (std::size_t d = 0; d < of.ranks.size(); ++d) {
        products += (of.ranks[d] - middle) * (of.scaled.Row(d)[k] - mean);
        squares += (of.ranks[d] - middle) * (of.ranks[d] - middle);
    }
    const double slope = squares > 0.0 ? products / squares : 0.0;
    ChartSeries series;
    series.legend = Text(StrCoxLegendTrend);
    series.group = 2;
    const auto [first, last] = std::ranges::minmax(of.ranks);
    for (const double rank : {first, last}) {
        series.x.push_back(rank);
        series.y.push_back(mean + slope * (rank - middle));
    }
    return series;
}

OutputResult PlotOf(const RegReportOf& of, const Residuals& residuals, std::size_t k) {
    const RegressionResults& results = of.Results();
    ChartSeries points;
    points.legend = Text(StrCoxLegendResiduals);
    points.style = ChartSeries::Style::Markers;
    points.role = ChartSeries::Role::Observed;
    points.marker = ChartSeries::Marker::Circle;
    points.x = residuals.ranks;
    for (std::size_t d = 0; d < residuals.ranks.size(); ++d)
        points.y.push_back(residuals.scaled.Row(d)[k]);
    ChartSeries trend = Trend(residuals, k);
    ChartSeries level;
    level.legend = Filled(StrCoxLegendBeta, {FormatNumber(results.estimates[k], 6)});
    level.group = 1;
    level.x = trend.x;
    level.y.assign(level.x.size(), results.estimates[k]);
    CChartInfo chart;
    chart.kind = CChartInfo::Kind::Scatter;
    chart.title = Filled(StrCoxSchoenfeldChart, {results.names[k]});
    chart.xAxis.title = Text(StrCoxAxisRank);
    chart.yAxis.title = Text(StrCoxAxisSchoenfeld);
    chart.notes.push_back(Filled(StrCoxNoteTrend, {FormatProbability(residuals.test.covariates[k].p)}));
    chart.series.push_back(std::move(points));
    chart.series.push_back(std::move(level));
    chart.series.push_back(std::move(trend));
    return ShowChart(of.host, chart);
}

} // namespace

OutputResult WriteProportionality(const RegReportOf& of) {
    const StatusLine line(of.host, StrPrinting);
    const RegressionResults& results = of.Results();
    const Residuals residuals(results);
    ResultTable table{Whole(StrCoxProportionalTitle)};
    table.IsEssential();
    table.AddFootnote(Whole(StrCoxNoteProportional));
    const auto correlation = table.AddNumbers(
        {"correlation", StrCoxColCorrelation, 0, Whole(StrCoxCorrelationInFull)}, CellFormat::fixed(6));
    const TestColumns columns(table);
    const std::size_t size = results.Parameters();
    if (!table.AddRows(of.host, size + 1)) return OutputResult::Failed(StrRegNoMemory);
    for (std::size_t k = 0; k < size; ++k) {
        if (ResultTable::StopsAt(of.host, k)) return OutputResult::NotMade();
        table.NameRow(results.names[k]);
        table[correlation][k] = residuals.test.correlation[k];
        columns.Fill(table, k, residuals.test.covariates[k]);
    }
    table.NameRow(Whole(StrCoxRowAll));
    columns.Fill(table, size, residuals.test.overall);
    if (std::ranges::any_of(residuals.test.correlation, [](double each) { return !std::isfinite(each); }))
        table.AddFootnote(Whole(StrCoxNoteNoCorrelation));
    return table.Write(of.host);
}

OutputResult WriteSchoenfeld(const RegReportOf& of) {
    const StatusLine line(of.host, StrPrinting);
    const RegressionResults& results = of.Results();
    const Residuals residuals(results);
    const CellFormat format = CellFormat::general(8);
    ResultTable table{Whole(StrCoxSchoenfeldTitle)};
    table.AddFootnote(Whole(StrCoxNoteSchoenfeld));
    const auto number = table.AddIntegers({"caseNumber", StrRegColCase1, StrRegColCaseNumber});
    const auto time = table.AddNumbers({"time", StrRegColTime1, StrRegColTime2}, format);
    const auto rank =
        table.AddNumbers({"rank", StrCoxColRank1, StrRegColTime2, Whole(StrCoxRankInFull)}, format);
    std::vector<ResultTable::Numbers> columns;
    for (std::size_t k = 0; k < results.Parameters(); ++k)
        columns.push_back(
            table.AddNumbers({.id = "covariate" + std::to_string(k + 1), .named = results.names[k]}, format));
    if (!table.AddRows(of.host, residuals.ranks.size())) return OutputResult::Failed(StrRegNoMemory);
    // In order of time, then as the events stand in the data.
    std::vector<std::size_t> order(residuals.ranks.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    const auto cases = results.sample.CaseNumbers();
    std::ranges::sort(order, {}, [&](std::size_t death) {
        return std::pair{residuals.ranks[death], cases[residuals.scaled.places[death]]};
    });
    FiniteCells cells;
    for (std::size_t row = 0; row < order.size(); ++row) {
        if (ResultTable::StopsAt(of.host, row)) return OutputResult::NotMade();
        const std::size_t place = residuals.scaled.places[order[row]];
        table[number][row] = cases[place];
        table[time][row] = residuals.sample.times[place];
        table[rank][row] = residuals.ranks[order[row]];
        for (std::size_t k = 0; k < columns.size(); ++k)
            cells.Put(table, columns[k], row, residuals.scaled.Row(order[row])[k]);
    }
    cells.AddNote(table);
    return table.Write(of.host);
}

OutputResult PlotSchoenfeld(const RegReportOf& of) {
    const StatusLine line(of.host, StrRegFitting);
    const Residuals residuals(of.Results());
    for (std::size_t k = 0; k < of.Results().Parameters(); ++k) {
        if (StopRequested(of.host)) return OutputResult::NotMade();
        if (const OutputResult shown = PlotOf(of, residuals, k); !shown.made) return shown;
    }
    return {};
}

} // namespace ozm::survival
