#pragma once

#include "host/results/ChartDrawing.h"

namespace korvana {

/// Draws a chart without a window, 960 by 640 pixels (PNG at twice that; SVG and PDF at 96 per inch), the
/// same layout in every format. Any numbers are accepted; a series without points keeps its entry in the
/// legend. A failure is returned, never thrown. Draws in this process (ChartApplication.h): where memory runs
/// out, the libraries may abort it.
[[nodiscard]] Picture renderChart(const ozm::CChartInfo& info, PictureFormat format,
                                  const PictureOptions& options = {});

} // namespace korvana
