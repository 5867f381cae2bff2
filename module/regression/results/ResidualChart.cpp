#include "module/regression/results/ResidualChart.h"

#include "module/resources/RegressionResults.h"
#include "module/resources/Resources.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

namespace ozm::survival {
namespace {

ChartSeries Marks(int legend, ChartSeries::Marker marker) {
    ChartSeries series;
    series.legend = Text(legend);
    series.style = ChartSeries::Style::Markers;
    series.role = ChartSeries::Role::Observed;
    series.marker = marker;
    return series;
}

} // namespace

CChartInfo ResidualChart(const ChartTitles& titles, std::span<const double> x, std::span<const double> y,
                         std::span<const std::uint8_t> complete) {
    ChartSeries events = Marks(StrRegLegendEvents, ChartSeries::Marker::Circle);
    ChartSeries censored = Marks(StrRegLegendCensored, ChartSeries::Marker::Plus);
    censored.group = 1;
    for (std::size_t i = 0; i < x.size(); ++i) {
        if (!std::isfinite(x[i]) || !std::isfinite(y[i])) continue;
        ChartSeries& series = complete[i] != 0 ? events : censored;
        series.x.push_back(x[i]);
        series.y.push_back(y[i]);
    }
    CChartInfo chart;
    chart.kind = CChartInfo::Kind::Scatter;
    chart.title = Text(titles.chart);
    chart.xAxis.title = Text(titles.x);
    chart.yAxis.title = Text(titles.y);
    chart.series.push_back(std::move(events));
    if (!censored.x.empty()) chart.series.push_back(std::move(censored));
    return chart;
}

std::vector<std::size_t> InOrderOfCases(std::span<const std::int32_t> caseNumbers) {
    std::vector<std::size_t> order(caseNumbers.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::sort(order, [&](std::size_t one, std::size_t other) {
        return std::pair{caseNumbers[one], one} < std::pair{caseNumbers[other], other};
    });
    return order;
}

} // namespace ozm::survival
