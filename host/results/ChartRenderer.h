#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "support/CChartInfo.h"

namespace korvana {

enum class PictureFormat : std::uint8_t { Svg, Png, Pdf };

inline constexpr const char* kNoMemoryToDraw = "not enough memory to draw";

/// A drawn chart, or why there is none.
struct Picture {
    std::string bytes;
    std::string error; ///< empty when drawn
    [[nodiscard]] bool drawn() const { return error.empty(); }
};

/// Draws a chart without a window, 960 by 640 pixels (PNG at twice that; SVG and PDF at 96 per inch), the
/// same layout in every format. Any numbers will do; a series without points leaves its place in the legend.
/// A failure is an answer, never an exception, nor the end of the program: a program without windows draws in
/// a process of its own (DrawingProcess.h); one with windows has to call it in their thread.
/// With `numbersAtRisk` they stand under the time axis, where the chart tells them.
[[nodiscard]] Picture drawChart(const ozm::CChartInfo& info, PictureFormat format,
                                bool numbersAtRisk = false);

/// The SVG of `drawChart` made fit to stand inside an HTML page: no prolog, sized by the page, a name for
/// screen readers, and identifiers beginning with `prefix`, so that several can stand on one page.
[[nodiscard]] std::string svgForPage(std::string_view svg, std::string_view prefix, std::string_view name);

} // namespace korvana
