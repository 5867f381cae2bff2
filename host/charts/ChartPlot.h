#pragma once

#include "support/CChartInfo.h"

class QCustomPlot;

namespace korvana {

struct PlotOptions {
    int width = 960; ///< logical pixels, for wrapping titles and the legend and for thinning
    int height = 640;
    /// Clip at the axes and leave out details below half a pixel. Off for a plot that people zoom.
    bool thin = true;
    bool dark = false;      ///< light ink on a dark ground, for a window of a dark theme
    double textScale = 1.0; ///< for people who prefer larger letters
};

/// Fills an empty plot: title, axes, legend below the axes (when there is more than one entry), series.
/// Colours are by group of the series, in order of appearance. Needs a QApplication; call it in its thread.
/// Any numbers are accepted: what is not finite is left out.
void fillPlot(QCustomPlot& plot, const ozm::CChartInfo& info, const PlotOptions& options = {});

/// The significant digits needed for neighbouring ticks of an axis from low to high to read differently, even
/// far from zero.
[[nodiscard]] int tickPrecision(double low, double high);

} // namespace korvana
