#include "host/session/SessionCharts.h"

#include <algorithm>
#include <new>

namespace korvana {
namespace {

bool isWellFormed(const ozm::ChartSeries& series) {
    if (!series.leavingCounts.empty() && series.leavingCounts.size() != series.leaving.size()) return false;
    if (!series.atRisk.empty() && series.atRisk.size() != series.x.size()) return false;
    return series.style == ozm::ChartSeries::Style::Histogram ? series.x.empty()
                                                              : series.x.size() == series.y.size();
}

} // namespace

short SessionCharts::NewGeneralMultipleChartLongEx(const ozm::CChartInfo& chart) try {
    if (chart.series.empty() || !std::all_of(chart.series.begin(), chart.series.end(), isWellFormed))
        return 1;
    parts_.addOutput(Chart{chart});
    return 0;
} catch (const std::bad_alloc&) {
    return 1;
}

short SessionCharts::MakeScatterplot(std::span<const float> x, std::span<const float> y,
                                     std::string_view title, std::string_view xAxis,
                                     std::string_view yAxis) try {
    if (x.size() != y.size()) return 1;
    ozm::CChartInfo info;
    info.title = title;
    info.xAxis.title = xAxis;
    info.yAxis.title = yAxis;
    info.kind = ozm::CChartInfo::Kind::Scatter;
    ozm::ChartSeries& series = info.series.emplace_back();
    series.style = ozm::ChartSeries::Style::Markers;
    series.marker = ozm::ChartSeries::Marker::Circle;
    series.x.assign(x.begin(), x.end());
    series.y.assign(y.begin(), y.end());
    parts_.addOutput(Chart{std::move(info)});
    return 0;
} catch (const std::bad_alloc&) {
    return 1;
}

} // namespace korvana
