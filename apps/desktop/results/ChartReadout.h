#pragma once

#include <QPointF>
#include <QString>
#include <cstddef>
#include <optional>

#include "support/CChartInfo.h"

class QCustomPlot;
class QCPItemText;
class QCPItemTracer;
class QColor;

namespace korvana::desktop {

/// A point of a series (both count from 0).
struct ChartPlace {
    std::size_t series = 0;
    std::size_t point = 0;
};

/// The point nearest to a place on the plot, within `reach` pixels, among those inside the axes. On a step
/// function the level that holds under the pointer counts as well, and reads as the point where it begins.
/// Histograms have no points.
[[nodiscard]] std::optional<ChartPlace> nearestPoint(const ozm::CChartInfo& info, const QCustomPlot& plot,
                                                     QPointF pixel, double reach);

/// The point before (`by` -1) or after (+1) this one in its series, or, with `acrossSeries`, the point of
/// the series before or after that is nearest in x. The same point when there is no other. Without a point to
/// start from: the first one; nothing for a chart without points.
[[nodiscard]] std::optional<ChartPlace>
neighbour(const ozm::CChartInfo& info, const std::optional<ChartPlace>& from, int by, bool acrossSeries);

/// A ring around a point with its values beside it, on the given plot (which owns both).
class ChartReadout {
public:
    ChartReadout(QCustomPlot& plot, const ozm::CChartInfo& info, double textScale, const QColor& ink,
                 const QColor& ground);

    void show(const ChartPlace& place);
    /// The class of a histogram under the pointer; false when there is none.
    bool showClass(QPointF pixel);
    void hide();
    [[nodiscard]] QString text() const;

private:
    void place(double x, double y, const QString& text, bool ring);
    [[nodiscard]] QString axisLine(const ozm::ChartAxis& axis, const QString& otherwise, double value) const;

    QCustomPlot& plot_;
    const ozm::CChartInfo& info_;
    QCPItemTracer* ring_;
    QCPItemText* box_;
};

} // namespace korvana::desktop
