#pragma once

#include <qcustomplot.h>

#include "host/charts/ChartGeometry.h"

namespace korvana {

/// How often a path turns from rising to falling or back.
[[nodiscard]] int reversals(const ChartPath& path);
/// Beyond this a path is one block of colour rather than a line, and slow to paint.
inline constexpr int mostReversals = 300;

/// Joined points or markers of a series, however many: what falls onto one place of the picture is painted
/// once, at any zoom.
class ChartCurve : public QCPCurve {
public:
    ChartCurve(QCustomPlot& plot, const ChartPath& path); ///< the plot owns it

    /// Markers nearer than that, in pixels, to the last one painted are left out, and the others are painted
    /// as thin upright ticks: a curve that carries thousands of them is still seen. 0: all are painted.
    void keepMarkersApart(double pixels) { apart_ = pixels; }

protected:
    void drawCurveLine(QCPPainter* painter, const QVector<QPointF>& lines) const override;
    void drawScatterPlot(QCPPainter* painter, const QVector<QPointF>& points,
                         const QCPScatterStyle& style) const override;

private:
    double apart_ = 0.0;
};

} // namespace korvana
