#pragma once

#include <qcustomplot.h>

#include "host/charts/ChartGeometry.h"

namespace korvana {

/// How often a path turns from rising to falling or back.
[[nodiscard]] int reversals(const ChartPath& path);
/// Beyond this a path is one block of colour rather than a line, and slow to paint.
inline constexpr int mostReversals = 300;

/// The joined points or markers of a series of any length: what falls onto the same place of the picture is
/// painted once, at any zoom.
class ChartCurve : public QCPCurve {
public:
    ChartCurve(QCustomPlot& plot, const ChartPath& path); ///< the plot owns it

    /// Leaves out markers closer than this, in pixels, to the last one painted, and paints the others as thin
    /// upright ticks, so that a curve with thousands of them can still be seen. 0: all are painted.
    void keepMarkersApart(double pixels) { apart_ = pixels; }

protected:
    void drawCurveLine(QCPPainter* painter, const QVector<QPointF>& lines) const override;
    void drawScatterPlot(QCPPainter* painter, const QVector<QPointF>& points,
                         const QCPScatterStyle& style) const override;

private:
    double apart_ = 0.0;
};

} // namespace korvana
