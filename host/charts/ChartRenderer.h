#pragma once

#include "host/results/ChartDrawing.h"

namespace korvana {

/// Draws a chart without a window, 960 by 640 pixels (PNG at twice that; SVG and PDF at 96 per inch), the
/// same layout in every format. Any numbers will do; a series without points leaves its place in the legend.
/// A failure is an answer, never an exception. Draws in this process (ChartApplication.h): where memory runs
/// out, the libraries below may end it.
[[nodiscard]] Picture renderChart(const ozm::CChartInfo& info, PictureFormat format,
                                  const PictureOptions& options = {});

} // namespace korvana
