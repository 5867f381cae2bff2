#pragma once

#include <optional>
#include <string>

#include "host/charts/ChartGeometry.h"
#include "support/CChartInfo.h"

namespace korvana::desktop {

/// The user's changes to a chart; the chart in the book stays as the analysis made it.
struct ChartEdits {
    std::optional<std::string> title;
    std::optional<std::string> xTitle;
    std::optional<std::string> yTitle;
    std::optional<Extent> x; ///< low < high
    std::optional<Extent> y;
    std::optional<bool> numbersAtRisk{};
    bool operator==(const ChartEdits&) const = default;

    [[nodiscard]] bool changesChart() const { return *this != ChartEdits{}; }
};

/// The chart with the changes made.
[[nodiscard]] ozm::CChartInfo edited(const ozm::CChartInfo& info, const ChartEdits& edits);

} // namespace korvana::desktop
