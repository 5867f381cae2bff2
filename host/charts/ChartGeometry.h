#pragma once

#include <span>
#include <vector>

#include "support/CChartInfo.h"

namespace korvana {

/// Turns a chart's numbers into paths inside the axes' ranges, thinned to what can be seen. The drawing back
/// ends clip differently (SVG not at all), so clipping is done here.

struct Extent {
    double low = 0.0;
    double high = 0.0;
    bool operator==(const Extent&) const = default;
    [[nodiscard]] double span() const { return high - low; }
    [[nodiscard]] bool contains(double value) const { return value >= low && value <= high; }
};

struct ChartPoint {
    double x;
    double y;
};

/// Points to be joined; a point with a NaN is a gap.
using ChartPath = std::vector<ChartPoint>;

/// Finite and not so large (1e200) that differences or squares leave the range of a double.
[[nodiscard]] bool isDrawable(double value);
[[nodiscard]] bool isDrawable(const ChartPoint& point);

/// The extent of the drawable values; low > high when there are none.
[[nodiscard]] Extent extentOf(std::span<const double> values);

/// The range of an axis: the given one if there is one, else the data's with `margin` of its span on both
/// sides. A span too small to be divided (equal values, or none) is widened around its middle.
[[nodiscard]] Extent axisExtent(const ozm::ChartAxis& axis, Extent data, double margin);

/// The series' points in their order, a step function with its corners written out.
[[nodiscard]] ChartPath pathOf(const ozm::ChartSeries& series);

/// Cuts the joined points at the borders (Liang and Barsky 1984, ACM Trans. Graphics 3:1-22).
[[nodiscard]] ChartPath clipped(const ChartPath& path, Extent x, Extent y);

/// Of each stretch within one of `columns` vertical strips, keeps the first, lowest, highest and last point.
[[nodiscard]] ChartPath thinned(const ChartPath& path, Extent x, int columns);

/// Single points inside the ranges, one for each occupied cell of a columns by rows raster.
[[nodiscard]] ChartPath markersOf(const ozm::ChartSeries& series, Extent x, Extent y, int columns, int rows);

/// Classes of equal width; class k holds start + k*width <= value < start + (k+1)*width, the last one also
/// its end.
struct HistogramClasses {
    double start = 0.0;
    double width = 1.0;
    int count = 1;
    [[nodiscard]] double end() const { return start + width * count; }
};

/// Width by Freedman and Diaconis (1981), 2 IQR n^(-1/3), or by Sturges (1926) where the quartiles coincide;
/// rounded to 1, 2 or 5 times a power of ten and laid on its multiples; 100 classes at most.
[[nodiscard]] HistogramClasses histogramClasses(std::span<const double> values);
[[nodiscard]] std::vector<double> countInto(const HistogramClasses& classes, std::span<const double> values);

} // namespace korvana
