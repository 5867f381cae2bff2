#pragma once

#include <QColor>
#include <QPen>
#include <cstddef>
#include <map>
#include <qcustomplot.h>

#include "support/CChartInfo.h"

namespace korvana {

struct ChartTones {
    QColor ink;
    QColor grid;
    QColor ground;
};
[[nodiscard]] const ChartTones& chartTones(bool dark);

[[nodiscard]] bool isBound(const ozm::ChartSeries& series);
[[nodiscard]] bool isPath(const ozm::ChartSeries& series); ///< a line or steps
[[nodiscard]] bool hasMarkers(const ozm::ChartSeries& series);

/// Colours, pens and markers of a chart's series. Colours are by group of the series, in order of appearance.
///
/// All of them are opaque: Qt blends translucent ones in threads of its pool and waits for ever where none
/// can be started. A tint is the colour blended with the chart's background.
class ChartStyle {
public:
    ChartStyle(const ozm::CChartInfo& info, bool dark);

    [[nodiscard]] std::size_t groupCount() const { return groups_.size(); }
    /// The place of a series' group among the groups, from 0.
    [[nodiscard]] std::size_t place(const ozm::ChartSeries& series) const { return groups_.at(series.group); }
    [[nodiscard]] QColor colour(const ozm::ChartSeries& series) const;
    [[nodiscard]] QColor tint(const ozm::ChartSeries& series, double share) const;
    [[nodiscard]] QPen pen(const ozm::ChartSeries& series) const;
    [[nodiscard]] QCPScatterStyle scatter(const ozm::ChartSeries& series) const;

private:
    bool dark_;
    std::map<int, std::size_t> groups_;
};

} // namespace korvana
