#pragma once

#include "host/charts/ChartGeometry.h"

namespace korvana {

struct ChartRanges {
    Extent x;
    Extent y;
    HistogramClasses classes; ///< of all histograms of the chart together
};

/// What the axes show: the given ranges, else the data's. Where something is drawn on an end of a given
/// range or close to it, the axis goes a little further, so that the line or the marker is drawn whole.
[[nodiscard]] ChartRanges rangesOf(const ozm::CChartInfo& info);

} // namespace korvana
