#include "apps/desktop/results/ChartEdits.h"

namespace korvana::desktop {
namespace {

void edit(ozm::ChartAxis& axis, const std::optional<std::string>& title, const std::optional<Extent>& range) {
    if (title) axis.title = *title;
    if (!range) return;
    axis.min = range->low;
    axis.max = range->high;
}

} // namespace

ozm::CChartInfo edited(const ozm::CChartInfo& info, const ChartEdits& edits) {
    ozm::CChartInfo result = info;
    if (edits.title) result.title = *edits.title;
    if (edits.numbersAtRisk) result.numbersAtRisk = *edits.numbersAtRisk;
    edit(result.xAxis, edits.xTitle, edits.x);
    edit(result.yAxis, edits.yTitle, edits.y);
    return result;
}

} // namespace korvana::desktop
