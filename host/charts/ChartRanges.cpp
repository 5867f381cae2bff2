#include "host/charts/ChartRanges.h"

#include <algorithm>

namespace korvana {
namespace {

using ozm::ChartSeries;

void include(Extent& extent, const Extent& more) {
    extent = {std::min(extent.low, more.low), std::max(extent.high, more.high)};
}

void makeRoom(Extent& shown, const ozm::ChartAxis& axis, const std::vector<double>& drawn) {
    if (!axis.hasRange() || axis.logarithmic || !axis.names.empty()) return;
    // Half of a marker, roughly.
    const double room = 0.012 * (axis.max - axis.min);
    const auto isDrawn = [&drawn](double from, double to) {
        return std::any_of(drawn.begin(), drawn.end(),
                           [from, to](double value) { return from <= value && value <= to; });
    };
    if (shown.low == axis.min && isDrawn(axis.min, axis.min + room)) shown.low -= room;
    if (shown.high == axis.max && isDrawn(axis.max - room, axis.max)) shown.high += room;
}

} // namespace

ChartRanges rangesOf(const ozm::CChartInfo& info) {
    ChartRanges ranges;
    std::vector<double> pooled;
    Extent x = extentOf({});
    Extent y = x;
    bool counts = false;
    for (const ChartSeries& series : info.series) {
        if (series.style == ChartSeries::Style::Histogram) {
            pooled.insert(pooled.end(), series.y.begin(), series.y.end());
            counts = true;
            continue;
        }
        include(x, extentOf(series.x));
        include(y, extentOf(series.y));
    }
    if (counts) {
        ranges.classes = histogramClasses(pooled);
        include(x, {ranges.classes.start, ranges.classes.end()});
        for (const ChartSeries& series : info.series) {
            if (series.style != ChartSeries::Style::Histogram) continue;
            include(y, extentOf(countInto(ranges.classes, series.y)));
        }
        include(y, {0.0, 1.0});
    }
    ranges.x = axisExtent(info.xAxis, x, 0.02);
    ranges.y = axisExtent(info.yAxis, y, 0.03);
    if (counts && !info.yAxis.hasRange()) ranges.y.low = std::min(0.0, y.low); // bars stand on the axis
    for (const ChartSeries& series : info.series) {
        if (series.style == ChartSeries::Style::Histogram) continue;
        makeRoom(ranges.x, info.xAxis, series.x);
        makeRoom(ranges.y, info.yAxis, series.y);
    }
    return ranges;
}

} // namespace korvana
