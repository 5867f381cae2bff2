#include "host/charts/ChartCurve.h"

#include <cmath>
#include <limits>

namespace korvana {
namespace {

constexpr int columnsPerPixel = 2;

QVector<QPointF> spaced(const QVector<QPointF>& points, double pixels) {
    QVector<QPointF> kept;
    for (const QPointF& point : points) {
        if (std::isnan(point.x()) || std::isnan(point.y())) continue;
        if (kept.isEmpty() || std::hypot(point.x() - kept.back().x(), point.y() - kept.back().y()) >= pixels)
            kept.append(point);
    }
    return kept;
}

} // namespace

int reversals(const ChartPath& path) {
    int count = 0;
    double last = 0.0;
    for (std::size_t i = 1; i < path.size(); ++i) {
        const double change = path[i].y - path[i - 1].y;
        if (change * last < 0.0) ++count;
        if (change != 0.0) last = change > 0.0 ? 1.0 : -1.0;
    }
    return count;
}

ChartCurve::ChartCurve(QCustomPlot& plot, const ChartPath& path) : QCPCurve(plot.xAxis, plot.yAxis) {
    QVector<QCPCurveData> points;
    points.reserve(static_cast<qsizetype>(path.size()));
    double t = 0.0;
    for (const ChartPoint& point : path)
        points.append(QCPCurveData(t++, point.x, point.y));
    data()->set(points, true);
    setScatterSkip(0);
}

void ChartCurve::drawCurveLine(QCPPainter* painter, const QVector<QPointF>& lines) const {
    const QRect area = clipRect();
    const int columns = columnsPerPixel * std::max(area.width(), 1);
    if (lines.size() <= qsizetype{4} * columns) return QCPCurve::drawCurveLine(painter, lines);
    ChartPath path;
    path.reserve(static_cast<std::size_t>(lines.size()));
    for (const QPointF& point : lines)
        path.push_back({point.x(), point.y()});
    QVector<QPointF> fewer;
    for (const ChartPoint& point : thinned(path, {double(area.left()), double(area.right())}, columns))
        fewer.append({point.x, point.y});
    QCPCurve::drawCurveLine(painter, fewer);
}

void ChartCurve::drawScatterPlot(QCPPainter* painter, const QVector<QPointF>& points,
                                 const QCPScatterStyle& style) const {
    const QVector<QPointF> kept = apart_ > 0.0 ? spaced(points, apart_) : points;
    if (kept.size() == points.size()) return QCPCurve::drawScatterPlot(painter, points, style);
    painter->setPen(QPen(style.pen().color(), 1.0));
    for (const QPointF& point : kept)
        painter->drawLine(
            QLineF(point.x(), point.y() - style.size() / 2, point.x(), point.y() + style.size() / 2));
}

} // namespace korvana
