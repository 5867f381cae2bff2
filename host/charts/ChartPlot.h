#pragma once

#include "support/CChartInfo.h"

class QCustomPlot;

namespace korvana {

struct PlotOptions {
    int width = 960; ///< logical pixels, for wrapping titles and the legend and for thinning
    int height = 640;
    /// Cut at the axes and leave out what lies within half a pixel. Off for a plot that people zoom.
    bool thin = true;
    bool dark = false;      ///< light ink on a dark ground, for a window of a dark theme
    double textScale = 1.0; ///< for people who read larger letters
};

/// Fills an empty plot: title, axes, legend below the axes (when there is more than one entry), series.
/// Colours go by the series' group, in order of appearance. Needs a QApplication; call it in its thread. Any
/// numbers will do: what is not finite is left out.
void fillPlot(QCustomPlot& plot, const ozm::CChartInfo& info, const PlotOptions& options = {});

/// Significant digits at which neighbouring ticks of an axis from low to high read differently, however far
/// from zero it lies.
[[nodiscard]] int tickPrecision(double low, double high);

} // namespace korvana
