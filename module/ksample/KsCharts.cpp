#include "module/groups/GroupEstimates.h"
#include "module/ksample/GroupColumns.h"
#include "module/ksample/KsOutput.h"
#include "module/resources/KSamples.h"
#include "module/resources/Resources.h"
#include "module/resources/Shared.h"
#include "module/survdata/ResultTable.h"
#include "module/survdata/ShowChart.h"
#include "module/survdata/StatusLine.h"

#include <array>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ozm::survival {
namespace {

constexpr GroupColumnNames groupOfRow{"group", "groupLabel", StrKsColGroup, 0};

/// One row of a group's curve in order of time; at a tie the uncensored observations come first.
struct CurveRow {
    double time = 0.0;
    bool censored = false;
    double survival = 1.0;
    double standardError = 0.0; ///< of an uncensored observation
};

std::vector<CurveRow> RowsOf(const GroupEstimate& estimate) {
    std::vector<CurveRow> rows;
    rows.reserve(estimate.uncensored.size() + estimate.censored.size());
    double survival = 1.0;
    std::size_t u = 0;
    for (const double censored : estimate.censored) {
        for (; u < estimate.uncensored.size() && estimate.uncensored[u] <= censored; ++u) {
            survival = estimate.survival[u];
            rows.push_back({estimate.uncensored[u], false, survival, estimate.standardError[u]});
        }
        rows.push_back({censored, true, survival, 0.0});
    }
    for (; u < estimate.uncensored.size(); ++u)
        rows.push_back({estimate.uncensored[u], false, estimate.survival[u], estimate.standardError[u]});
    return rows;
}

using Curves = std::vector<std::vector<CurveRow>>;

OutputResult WriteCurveTable(const KsReportOf& of, const Curves& curves) {
    static constexpr std::array<std::string_view, 2> marks{"", "+"};
    ResultTable table{std::string{Text(StrKsCurves)}};
    GroupColumns groups(of, table, groupOfRow);
    const auto time = table.AddNumbers({"time", StrKsColTime1, StrKsColTime2}, CellFormat::general(8));
    const auto mark = table.AddMarks({"censored", StrKsColMark}, marks);
    const auto survival = table.AddNumbers(
        {"survival", StrKsColSurvival1, StrKsColSurvival2, std::string{Text(StrKsSurvivalInFull)}},
        CellFormat::fixed(6));
    const auto error =
        table.AddNumbers({"standardError", StrKsColError1, StrKsColError2}, CellFormat::fixed(6));
    if (!table.AddRows(of.host, of.results.observations.Size())) return OutputResult::Failed(StrKsNoMemory);
    std::size_t i = 0;
    for (std::size_t g = 0; g < curves.size(); ++g)
        for (const CurveRow& row : curves[g]) {
            if (ResultTable::StopsAt(of.host, i)) return OutputResult::NotMade();
            groups.Name(i, g);
            table[time][i] = row.time;
            table[mark][i] = row.censored ? 1 : 0;
            if (!row.censored) {
                table[survival][i] = row.survival;
                table[error][i] = row.standardError;
            }
            ++i;
        }
    return table.Write(of.host);
}

/// "@L[3]Complete  @L[2]Censored": a text for each marker. The numbers name the markers, which are the
/// chart's own.
std::pair<std::string, std::string> MarkerTexts() {
    constexpr std::string_view sign = "@L[";
    const auto textOf = [&](std::string_view part) {
        part.remove_prefix(part.find(']') + 1);
        const std::size_t end = part.find_last_not_of(' ');
        return std::string{part.substr(0, end + 1)};
    };
    const std::string_view legend = Text(StrKsLegend);
    const std::size_t second = legend.find(sign, 1);
    return {textOf(legend.substr(0, second)), textOf(legend.substr(second))};
}

/// The estimate of a group as a step function, its observations on it.
void AddCurve(CChartInfo& chart, std::string legend, int group, const std::vector<CurveRow>& rows) {
    ChartSeries curve;
    curve.legend = std::move(legend);
    curve.group = group;
    curve.style = ChartSeries::Style::Step;
    curve.x.push_back(0.0);
    curve.y.push_back(1.0);
    ChartSeries complete;
    complete.group = group;
    complete.style = ChartSeries::Style::Markers;
    complete.role = ChartSeries::Role::Observed;
    complete.marker = ChartSeries::Marker::Circle;
    ChartSeries censored = complete;
    censored.role = ChartSeries::Role::Censored;
    censored.marker = ChartSeries::Marker::Plus;
    for (const CurveRow& row : rows) {
        curve.x.push_back(row.time);
        curve.y.push_back(row.survival);
        curve.leaving.push_back(row.time);
        ChartSeries& marks = row.censored ? censored : complete;
        marks.x.push_back(row.time);
        marks.y.push_back(row.survival);
    }
    for (ChartSeries* series : {&curve, &complete, &censored})
        if (!series->x.empty()) chart.series.push_back(std::move(*series));
}

/// Series without points: entries of the legend alone.
void AddMarkerLegend(CChartInfo& chart) {
    const auto [complete, censored] = MarkerTexts();
    ChartSeries entry;
    entry.style = ChartSeries::Style::Markers;
    entry.group = ChartSeries::allGroups;
    entry.role = ChartSeries::Role::Observed;
    entry.marker = ChartSeries::Marker::Circle;
    entry.legend = complete;
    chart.series.push_back(entry);
    entry.role = ChartSeries::Role::Censored;
    entry.marker = ChartSeries::Marker::Plus;
    entry.legend = censored;
    chart.series.push_back(std::move(entry));
}

OutputResult PlotCurves(const KsReportOf& of, const Curves& curves) {
    CChartInfo chart;
    chart.kind = CChartInfo::Kind::Step;
    chart.title = Text(StrKsCurves);
    chart.xAxis.title = Text(StrKsAxisTime);
    chart.yAxis.title = Text(StrKsAxisSurviving);
    chart.yAxis.min = 0.0;
    chart.yAxis.max = 1.0;
    // Of a long legend only the beginning is drawn.
    const bool many = curves.size() > 12;
    if (many) AddMarkerLegend(chart);
    for (std::size_t g = 0; g < curves.size(); ++g)
        AddCurve(chart, of.groups.Legend(of.host, g), static_cast<int>(g), curves[g]);
    if (!many) AddMarkerLegend(chart);
    return ShowChart(of.host, chart);
}

} // namespace

OutputResult WriteKsCurves(const KsReportOf& of) {
    const StatusLine line(of.host, StrKsComputingCumulative);
    Curves curves;
    for (const GroupEstimate& estimate : EstimateGroups(of.results.Sample()))
        curves.push_back(RowsOf(estimate));
    if (const OutputResult written = WriteCurveTable(of, curves); !written.made) return written;
    return PlotCurves(of, curves);
}

OutputResult PlotKsHistogram(const KsReportOf& of) {
    const StatusLine line(of.host, StrKsComputing);
    const PooledSample sample = of.results.Sample();
    CChartInfo chart;
    chart.kind = CChartInfo::Kind::Histogram;
    chart.title = Text(StrKsHistogram);
    chart.xAxis.title = Text(StrKsAxisScores);
    chart.yAxis.title = Text(StrKsAxisObservations);
    chart.series.resize(sample.groups.size());
    for (std::size_t g = 0; g < chart.series.size(); ++g) {
        chart.series[g].style = ChartSeries::Style::Histogram;
        chart.series[g].group = static_cast<int>(g);
        chart.series[g].legend = std::string{Text(StrKsHistogramGroup)} + of.groups.Code(of.host, g);
    }
    for (std::size_t i = 0; i < sample.observations.size(); ++i)
        chart.series[static_cast<std::size_t>(sample.observations[i].group) - 1].y.push_back(
            of.results.scores[i]);
    return ShowChart(of.host, chart);
}

} // namespace ozm::survival
