#pragma once

#include "host/results/ChartDrawing.h"

/// The entry of the library that draws for programs without windows, loaded when there is something to draw.
namespace korvana {

inline constexpr const char* drawingEntry = "korvanaDrawChart";

/// Like `renderChart`.
using DrawingEntry = void(const ozm::CChartInfo& info, PictureFormat format, const PictureOptions& options,
                          Picture& picture);

} // namespace korvana
