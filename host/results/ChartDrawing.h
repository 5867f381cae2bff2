#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "support/CChartInfo.h"

namespace korvana {

enum class PictureFormat : std::uint8_t { Svg, Png, Pdf };

inline constexpr const char* noMemoryToDraw = "not enough memory to draw";

/// A drawn chart, or why there is none.
struct Picture {
    std::string bytes;
    std::string error; ///< empty when drawn
    [[nodiscard]] bool drawn() const { return error.empty(); }
};

struct PictureOptions {
    /// An SVG to stand inside an HTML page: no prolog, sized by the page, a name for screen readers, and
    /// identifiers beginning with this prefix, so that several can stand on one page.
    std::string_view pagePrefix{};
};

using ChartDrawer = Picture (*)(const ozm::CChartInfo& info, PictureFormat format,
                                const PictureOptions& options);

/// A program with windows, which has to draw in their thread and holds the drawing library anyway, hands its
/// drawer over (`renderChart`). Any other loads the library for each picture in a process of its own
/// (WorkApart.h), so that nothing but pictures depends on it.
void useChartDrawer(ChartDrawer drawer);

/// Draws a chart, see `renderChart`. A failure is an answer, never an exception, nor the end of the program.
[[nodiscard]] Picture drawChart(const ozm::CChartInfo& info, PictureFormat format,
                                const PictureOptions& options = {});

} // namespace korvana
