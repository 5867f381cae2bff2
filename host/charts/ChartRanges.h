#pragma once

#include "host/charts/ChartGeometry.h"

namespace korvana {

struct ChartRanges {
    Extent x;
    Extent y;
    HistogramClasses classes; ///< of all histograms of the chart together
};

/// The ranges of the axes: those given, else those of the data. Where something is drawn at an end of a given
/// range or close to it, the axis goes a little further, so that the line or marker is not cut.
[[nodiscard]] ChartRanges rangesOf(const ozm::CChartInfo& info);

} // namespace korvana
