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
    /// For an SVG inside an HTML page: no prolog, sized by the page, a name for screen readers, and
    /// identifiers beginning with this prefix, so that a page can have several.
    std::string_view pagePrefix{};
};

using ChartDrawer = Picture (*)(const ozm::CChartInfo& info, PictureFormat format,
                                const PictureOptions& options);

/// A program with windows, which must draw in their thread and links the drawing library anyway, passes its
/// drawer (`renderChart`). Any other program loads the library in a separate process for each picture
/// (WorkApart.h), so that nothing but pictures depends on it.
void useChartDrawer(ChartDrawer drawer);

/// Draws a chart, see `renderChart`. A failure is returned, never thrown, and never ends the program.
[[nodiscard]] Picture drawChart(const ozm::CChartInfo& info, PictureFormat format,
                                const PictureOptions& options = {});

} // namespace korvana
