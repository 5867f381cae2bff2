#include "apps/desktop/results/ChartReadout.h"

#include <QCoreApplication>
#include <algorithm>
#include <cmath>
#include <limits>
#include <qcustomplot.h>

#include "host/charts/ChartFonts.h"
#include "host/charts/ChartGeometry.h"
#include "host/charts/ChartText.h"
#include "host/results/FormatNumber.h"
#include "host/results/Utf8.h"

namespace korvana::desktop {
namespace {

using ozm::ChartSeries;

QString number(double value) {
    return QString::fromStdString(formatNumber(value, ozm::CellFormat::general(6)));
}

bool hasPoints(const ChartSeries& series) {
    return series.style != ChartSeries::Style::Histogram && !series.x.empty() &&
           series.x.size() == series.y.size();
}

bool isDrawn(const ChartSeries& series, std::size_t point) {
    return isDrawable(series.x[point]) && isDrawable(series.y[point]);
}

std::optional<std::size_t> nearestInX(const ChartSeries& series, double x) {
    std::optional<std::size_t> best;
    for (std::size_t i = 0; i < series.x.size(); ++i)
        if (isDrawn(series, i) && (!best || std::fabs(series.x[i] - x) < std::fabs(series.x[*best] - x)))
            best = i;
    return best;
}

} // namespace

std::optional<ChartPlace> nearestPoint(const ozm::CChartInfo& info, const QCustomPlot& plot, QPointF pixel,
                                       double reach) {
    const QCPRange x = plot.xAxis->range();
    const QCPRange y = plot.yAxis->range();
    std::optional<ChartPlace> best;
    double least = reach;
    const auto offer = [&](double distance, std::size_t series, std::size_t point) {
        if (!(distance < least)) return;
        least = distance;
        best = ChartPlace{series, point};
    };
    for (std::size_t s = 0; s < info.series.size(); ++s) {
        const ChartSeries& series = info.series[s];
        if (!hasPoints(series)) continue;
        for (std::size_t i = 0; i < series.x.size(); ++i) {
            if (!isDrawn(series, i) || !y.contains(series.y[i])) continue;
            const double px = plot.xAxis->coordToPixel(series.x[i]) - pixel.x();
            const double py = plot.yAxis->coordToPixel(series.y[i]) - pixel.y();
            if (x.contains(series.x[i])) offer(std::hypot(px, py), s, i);
            const bool holds = series.style == ChartSeries::Style::Step && px <= 0.0 &&
                               i + 1 < series.x.size() &&
                               plot.xAxis->coordToPixel(series.x[i + 1]) > pixel.x();
            // A point takes precedence over a line that passes by.
            if (holds) offer(std::fabs(py) + 2.0, s, i);
        }
    }
    return best;
}

std::optional<ChartPlace> neighbour(const ozm::CChartInfo& info, const std::optional<ChartPlace>& from,
                                    int by, bool acrossSeries) {
    if (!from || from->series >= info.series.size() || !hasPoints(info.series[from->series])) {
        for (std::size_t s = 0; s < info.series.size(); ++s) {
            if (!hasPoints(info.series[s])) continue;
            if (const auto first = nearestInX(info.series[s], -std::numeric_limits<double>::max()))
                return ChartPlace{s, *first};
        }
        return std::nullopt;
    }
    const auto step = static_cast<std::ptrdiff_t>(by);
    const ChartSeries& series = info.series[from->series];
    if (acrossSeries) {
        const double x = series.x[std::min(from->point, series.x.size() - 1)];
        const auto count = static_cast<std::ptrdiff_t>(info.series.size());
        for (auto s = static_cast<std::ptrdiff_t>(from->series) + step; s >= 0 && s < count; s += step) {
            const auto other = static_cast<std::size_t>(s);
            if (!hasPoints(info.series[other])) continue;
            if (const auto point = nearestInX(info.series[other], x)) return ChartPlace{other, *point};
        }
        return from;
    }
    const auto count = static_cast<std::ptrdiff_t>(series.x.size());
    for (auto i = static_cast<std::ptrdiff_t>(from->point) + step; i >= 0 && i < count; i += step)
        if (isDrawn(series, static_cast<std::size_t>(i)))
            return ChartPlace{from->series, static_cast<std::size_t>(i)};
    return from;
}

ChartReadout::ChartReadout(QCustomPlot& plot, const ozm::CChartInfo& info, double textScale,
                           const QColor& ink, const QColor& ground)
    : plot_(plot), info_(info), ring_(new QCPItemTracer(&plot)), box_(new QCPItemText(&plot)) {
    ring_->setStyle(QCPItemTracer::tsCircle);
    ring_->setSize(11);
    ring_->setPen(QPen(ink, 2));
    ring_->setBrush(Qt::NoBrush);
    box_->setFont(chartFont(static_cast<int>(std::lround(13 * textScale))));
    box_->setColor(ink);
    box_->setPen(QPen(ink, 1));
    box_->setBrush(ground);
    box_->setPadding(QMargins(8, 5, 8, 5));
    box_->setTextAlignment(Qt::AlignLeft);
    box_->setClipToAxisRect(false);
    hide();
}

QString ChartReadout::axisLine(const ozm::ChartAxis& axis, const QString& otherwise, double value) const {
    const QString title = axis.title.empty() ? (axis.names.empty() ? otherwise : QString{})
                                             : elidedLine(axis.title, box_->font(), plot_.width() / 3);
    const bool named = value >= 1.0 && value <= static_cast<double>(axis.names.size());
    const QString text = named ? elidedLine(axis.names[static_cast<std::size_t>(std::lround(value)) - 1],
                                            box_->font(), plot_.width() / 3)
                               : number(value);
    return title.isEmpty() ? text : title + QStringLiteral(": ") + text;
}

void ChartReadout::place(double x, double y, const QString& text, bool ring) {
    ring_->position->setCoords(x, y);
    ring_->setVisible(ring);
    box_->setText(text);
    const double px = plot_.xAxis->coordToPixel(x);
    const double py = plot_.yAxis->coordToPixel(y);
    const QRect area = plot_.axisRect()->rect();
    // Towards the middle, so that it stays inside the plot.
    const bool left = px > area.center().x();
    const bool above = py > area.center().y();
    box_->setPositionAlignment((left ? Qt::AlignRight : Qt::AlignLeft) |
                               (above ? Qt::AlignBottom : Qt::AlignTop));
    box_->position->setType(QCPItemPosition::ptAbsolute);
    box_->position->setCoords(px + (left ? -12 : 12), py + (above ? -12 : 12));
    box_->setVisible(true);
}

void ChartReadout::show(const ChartPlace& at) {
    const ChartSeries& series = info_.series.at(at.series);
    QStringList lines;
    if (!shownLine(series.legend).empty())
        lines += elidedLine(series.legend, box_->font(), plot_.width() / 3);
    lines += axisLine(info_.xAxis, QStringLiteral("x"), series.x.at(at.point));
    lines += axisLine(info_.yAxis, QStringLiteral("y"), series.y.at(at.point));
    place(series.x[at.point], series.y[at.point], lines.join('\n'), true);
}

bool ChartReadout::showClass(QPointF pixel) {
    const double x = plot_.xAxis->pixelToCoord(pixel.x());
    const double y = plot_.yAxis->pixelToCoord(pixel.y());
    if (!plot_.axisRect()->rect().contains(pixel.toPoint())) return false;
    for (int i = 0; i < plot_.plottableCount(); ++i) {
        const auto* bars = qobject_cast<const QCPBars*>(plot_.plottable(i));
        if (bars == nullptr) continue;
        for (const QCPBarsData& bar : *bars->data()) {
            const double half = bars->width() / 2;
            if (x < bar.key - half || x >= bar.key + half || y < 0.0 || y > bar.value) continue;
            QStringList lines;
            if (!bars->name().isEmpty()) lines += bars->name();
            lines += QCoreApplication::translate("ChartReadout", "%1 to %2: %3")
                         .arg(number(bar.key - half), number(bar.key + half), number(bar.value));
            place(x, y, lines.join('\n'), false);
            return true;
        }
    }
    return false;
}

void ChartReadout::hide() {
    ring_->setVisible(false);
    box_->setVisible(false);
    box_->setText({});
}

QString ChartReadout::text() const {
    return box_->text();
}

} // namespace korvana::desktop
