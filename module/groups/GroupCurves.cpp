#include "module/groups/GroupCurves.h"

#include "module/resources/Groups.h"
#include "module/resources/Resources.h"
#include "module/resources/Shared.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/ShowChart.h"
#include "module/survdata/StatusLine.h"
#include "module/survdata/StatusMessages.h"

#include <array>
#include <utility>
#include <vector>

namespace ozm::survival {
namespace {

ChartSeries::Marker MarkerOf(std::size_t group) {
    using Marker = ChartSeries::Marker;
    static constexpr std::array markers{Marker::Circle, Marker::Square, Marker::Triangle, Marker::Cross};
    return markers[group % markers.size()];
}

ChartSeries SeriesOf(std::string legend, std::size_t group, const LifeTable& table, SurvivalPlot plot) {
    ChartSeries series;
    series.legend = std::move(legend);
    series.group = static_cast<int>(group);
    series.marker = MarkerOf(group);
    const bool cumulative = plot == SurvivalPlot::Cumulative;
    const IntervalColumn& column = cumulative ? table.cumulativeSurviving : table.proportionSurviving;
    for (std::size_t row = 0; row < static_cast<std::size_t>(table.rows); ++row) {
        // Nobody enters the interval: no proportion survives it.
        if (!cumulative && table.entering[row] == 0.0) continue;
        series.x.push_back(table.lower[row]);
        series.y.push_back(column[row]);
    }
    return series;
}

/// Adds the times at which observations leave each group, for the numbers at risk below the curves.
void AddLeaving(CChartInfo& chart, const PooledSample& sample) {
    std::vector<ChartSeries*> seriesOf(sample.groups.size());
    for (ChartSeries& series : chart.series)
        seriesOf[static_cast<std::size_t>(series.group)] = &series;
    for (const PooledObservation& o : sample.observations)
        if (ChartSeries* series = seriesOf[static_cast<std::size_t>(o.group) - 1])
            series->leaving.push_back(o.time);
}

} // namespace

std::string NamedGroups::Code(CAnalysisSupport& host, std::size_t group) const {
    return CodeWithLabel(host, shared.First(ListGrouping), codes[group]);
}

std::string NamedGroups::Legend(CAnalysisSupport& host, std::size_t group) const {
    return std::string{Text(StrLtLegendGroup)} + FormatExact(codes[group]) + " (" +
           MeaningOfCode(host, shared.First(ListGrouping), codes[group]) + ")";
}

OutputResult TabulateGroups(const PooledSample& sample, GroupLifeTables& result) {
    static constexpr StatusMessage<LifeTableStatus> messages[] = {{LifeTableStatus::NoWidth, StrLtNoWidth}};
    if (const int message = MessageOf(ComputeGroupLifeTables(sample, result), messages); message != 0)
        return OutputResult::Failed(message);
    return result.Rows() > 0 ? OutputResult{} : OutputResult::Failed(StrLtFewerThan3Cases);
}

OutputResult PlotGroupSurvival(CAnalysisSupport& host, const NamedGroups& groups, const PooledSample& sample,
                               SurvivalPlot plot) {
    const bool cumulative = plot == SurvivalPlot::Cumulative;
    const StatusLine line(host, cumulative ? StrComputingCumulative : StrComputingSurvival);
    GroupLifeTables result;
    if (const OutputResult tabulated = TabulateGroups(sample, result); !tabulated.made) return tabulated;
    CChartInfo chart;
    chart.kind = CChartInfo::Kind::Line;
    chart.xAxis.title = Text(StrLtAxisStart);
    chart.yAxis.title = Text(cumulative ? StrLtAxisCumulative : StrLtAxisSurviving);
    chart.yAxis.min = 0.0;
    chart.yAxis.max = 1.0;
    chart.title = std::string{Text(StrLtSurvivorship)} + ": " + chart.yAxis.title;
    for (std::size_t g = 0; g < result.tables.size(); ++g)
        if (result.tables[g].rows > 0)
            chart.series.push_back(SeriesOf(groups.Legend(host, g), g, result.tables[g], plot));
    if (cumulative) AddLeaving(chart, sample);
    return ShowChart(host, chart);
}

std::string GroupLifeTablesReason(CAnalysisSupport& host, const NamedGroups& groups,
                                  const PooledSample& sample, int message) {
    if (message == StrLtFewerThan3Cases) {
        std::vector<std::string> list;
        for (std::size_t g = 0; g < sample.groups.size(); ++g)
            list.push_back(
                Filled(StrLtCasesWithCode, {FormatCount(sample.groups[g].All()), groups.Code(host, g)}));
        return "\n" + Filled(StrLtCasesOfGroups,
                             {Listed(list, StrAnd), QuotedName(host, groups.shared.First(ListGrouping))});
    }
    if (message == StrLtNoWidth)
        return "\n" + Filled(StrLtLargestTime, {FormatNumber(sample.observations.back().time),
                                                QuotedNames(host, groups.shared.Times(), StrAnd)});
    return {};
}

} // namespace ozm::survival
