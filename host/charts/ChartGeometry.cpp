#include "host/charts/ChartGeometry.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <unordered_set>

namespace korvana {
namespace {

constexpr double largestValue = 1e200;
constexpr double gap = std::numeric_limits<double>::quiet_NaN();

/// Whether an axis is too narrow for ticks that a double can tell apart.
bool tooNarrow(Extent extent) {
    const double magnitude = std::max(std::fabs(extent.low), std::fabs(extent.high));
    return !(extent.span() > std::max(magnitude * 1e-12, 1e-150));
}

Extent widened(Extent extent) {
    const double middle = extent.low + extent.span() / 2;
    const double half = std::fabs(middle) > 1e-100 ? std::fabs(middle) * 0.1 : 1.0;
    return {middle - half, middle + half};
}

/// Narrows the part [from, to] of a segment to the side of one border; false when nothing is left.
bool narrow(double direction, double distance, double& from, double& to) {
    if (direction == 0.0) return distance >= 0.0;
    const double at = distance / direction;
    if (direction < 0.0) {
        from = std::max(from, at);
    } else {
        to = std::min(to, at);
    }
    return from <= to;
}

ChartPoint between(const ChartPoint& a, const ChartPoint& b, double part, Extent x, Extent y) {
    return {std::clamp(a.x + part * (b.x - a.x), x.low, x.high),
            std::clamp(a.y + part * (b.y - a.y), y.low, y.high)};
}

int cellOf(double value, Extent extent, int cells) {
    const double part = (value - extent.low) / extent.span();
    return static_cast<int>(std::clamp(part, 0.0, 1.0) * cells);
}

double niceWidth(double width) {
    const double power = std::pow(10.0, std::floor(std::log10(width)));
    const double mantissa = width / power;
    return (mantissa < 1.5 ? 1.0 : mantissa < 3.5 ? 2.0 : mantissa < 7.5 ? 5.0 : 10.0) * power;
}

/// As `axisExtent`, in logarithms.
Extent logExtent(const ozm::ChartAxis& axis, Extent data, double margin) {
    ozm::ChartAxis linear;
    if (axis.hasRange() && axis.min > 0.0) {
        linear.min = std::log(axis.min);
        linear.max = std::log(axis.max);
    }
    const bool drawable = data.low > 0.0 && data.low <= data.high;
    const Extent logs = drawable ? Extent{std::log(data.low), std::log(data.high)} : Extent{0.0, 1.0};
    const Extent extent = axisExtent(linear, logs, margin);
    return {std::exp(extent.low), std::exp(extent.high)};
}

} // namespace

bool isDrawable(double value) {
    return std::fabs(value) <= largestValue;
}

bool isDrawable(const ChartPoint& point) {
    return isDrawable(point.x) && isDrawable(point.y);
}

Extent extentOf(std::span<const double> values) {
    Extent extent{std::numeric_limits<double>::max(), std::numeric_limits<double>::lowest()};
    for (const double value : values) {
        if (!isDrawable(value)) continue;
        extent.low = std::min(extent.low, value);
        extent.high = std::max(extent.high, value);
    }
    return extent;
}

Extent axisExtent(const ozm::ChartAxis& axis, Extent data, double margin) {
    if (axis.logarithmic) return logExtent(axis, data, margin);
    if (axis.hasRange() && isDrawable(axis.min) && isDrawable(axis.max)) {
        const Extent given{axis.min, axis.max};
        return tooNarrow(given) ? widened(given) : given;
    }
    if (data.low > data.high) return {0.0, 1.0};
    if (tooNarrow(data)) return widened(data);
    const double extra = data.span() * margin;
    return {data.low - extra, data.high + extra};
}

ChartPath pathOf(const ozm::ChartSeries& series) {
    const std::size_t size = std::min(series.x.size(), series.y.size());
    const bool steps = series.style == ozm::ChartSeries::Style::Step;
    ChartPath path;
    path.reserve(steps ? 2 * size : size);
    for (std::size_t i = 0; i < size; ++i) {
        const ChartPoint point{series.x[i], series.y[i]};
        if (!isDrawable(point)) {
            path.push_back({gap, gap});
            continue;
        }
        if (steps && !path.empty() && isDrawable(path.back())) path.push_back({point.x, path.back().y});
        path.push_back(point);
    }
    return path;
}

ChartPath clipped(const ChartPath& path, Extent x, Extent y) {
    ChartPath result;
    result.reserve(path.size());
    bool joined = false; // whether the last point of the result is where the path is now
    if (path.size() == 1 && x.contains(path[0].x) && y.contains(path[0].y)) result.push_back(path[0]);
    for (std::size_t i = 1; i < path.size(); ++i) {
        const ChartPoint& a = path[i - 1];
        const ChartPoint& b = path[i];
        double from = 0.0;
        double to = 1.0;
        const double dx = b.x - a.x;
        const double dy = b.y - a.y;
        const bool seen = isDrawable(a) && isDrawable(b) && narrow(-dx, a.x - x.low, from, to) &&
                          narrow(dx, x.high - a.x, from, to) && narrow(-dy, a.y - y.low, from, to) &&
                          narrow(dy, y.high - a.y, from, to);
        if (!seen) {
            joined = false;
            continue;
        }
        if (!joined) {
            if (!result.empty()) result.push_back({gap, gap});
            result.push_back(between(a, b, from, x, y));
        }
        result.push_back(between(a, b, to, x, y));
        joined = to == 1.0;
    }
    return result;
}

ChartPath thinned(const ChartPath& path, Extent x, int columns) {
    ChartPath result;
    std::size_t begin = 0;
    while (begin < path.size()) {
        if (!isDrawable(path[begin])) {
            result.push_back(path[begin++]);
            continue;
        }
        const int column = cellOf(path[begin].x, x, columns);
        std::size_t lowest = begin;
        std::size_t highest = begin;
        std::size_t end = begin + 1;
        for (; end < path.size() && isDrawable(path[end]) && cellOf(path[end].x, x, columns) == column;
             ++end) {
            if (path[end].y < path[lowest].y) lowest = end;
            if (path[end].y > path[highest].y) highest = end;
        }
        std::size_t last = std::numeric_limits<std::size_t>::max();
        for (const std::size_t kept :
             {begin, std::min(lowest, highest), std::max(lowest, highest), end - 1}) {
            if (kept != last) result.push_back(path[kept]);
            last = kept;
        }
        begin = end;
    }
    return result;
}

ChartPath markersOf(const ozm::ChartSeries& series, Extent x, Extent y, int columns, int rows) {
    const std::size_t size = std::min(series.x.size(), series.y.size());
    std::unordered_set<std::int64_t> occupied;
    ChartPath markers;
    for (std::size_t i = 0; i < size; ++i) {
        const ChartPoint point{series.x[i], series.y[i]};
        if (!isDrawable(point) || !x.contains(point.x) || !y.contains(point.y)) continue;
        const std::int64_t cell =
            std::int64_t{cellOf(point.x, x, columns)} * (rows + 1) + cellOf(point.y, y, rows);
        if (occupied.insert(cell).second) markers.push_back(point);
    }
    return markers;
}

HistogramClasses histogramClasses(std::span<const double> values) {
    std::vector<double> sorted;
    std::copy_if(values.begin(), values.end(), std::back_inserter(sorted),
                 [](double v) { return isDrawable(v); });
    if (sorted.empty()) return {};
    std::sort(sorted.begin(), sorted.end());
    const Extent extent{sorted.front(), sorted.back()};
    if (tooNarrow(extent)) {
        const Extent wide = widened(extent);
        return {wide.low, wide.span(), 1};
    }
    const auto n = static_cast<double>(sorted.size());
    const double quartiles = sorted[(sorted.size() - 1) * 3 / 4] - sorted[(sorted.size() - 1) / 4];
    double width = 2.0 * quartiles / std::cbrt(n);
    if (!(width > 0.0)) width = extent.span() / (std::log2(n) + 1.0);
    width = niceWidth(std::clamp(width, extent.span() / 60.0, extent.span()));

    HistogramClasses classes{std::floor(extent.low / width) * width, width, 1};
    // Far from zero, neighbouring multiples of the width are equal numbers: begin at the data instead.
    if (std::fabs(extent.low) / width > 1e12) classes.start = extent.low;
    classes.count = std::clamp(static_cast<int>(std::ceil((extent.high - classes.start) / width)), 1, 100);
    return classes;
}

std::vector<double> countInto(const HistogramClasses& classes, std::span<const double> values) {
    std::vector<double> counts(static_cast<std::size_t>(std::max(classes.count, 1)), 0.0);
    for (const double value : values) {
        if (!isDrawable(value)) continue;
        const double place = std::floor((value - classes.start) / classes.width);
        const double last = static_cast<double>(counts.size()) - 1.0;
        ++counts[static_cast<std::size_t>(std::clamp(place, 0.0, last))];
    }
    return counts;
}

} // namespace korvana
