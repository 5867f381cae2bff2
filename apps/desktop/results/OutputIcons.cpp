#include "apps/desktop/results/OutputIcons.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QStyle>
#include <QWidget>

namespace korvana::desktop {
namespace {

/// Drawn in a square of 16 by 16.
QPainterPath shape(OutputIcon kind) {
    QPainterPath path;
    const auto line = [&path](double x1, double y1, double x2, double y2) {
        path.moveTo(x1, y1);
        path.lineTo(x2, y2);
    };
    switch (kind) {
    case OutputIcon::Run:
        path.addRect(2.5, 4.5, 11, 9);
        line(2.5, 7.5, 13.5, 7.5);
        line(5.5, 2.5, 10.5, 2.5);
        break;
    case OutputIcon::Report:
        for (const double y : {3.5, 6.5, 9.5})
            line(2.5, y, 13.5, y);
        line(2.5, 12.5, 9.5, 12.5);
        break;
    case OutputIcon::Table:
        path.addRect(2.5, 3.5, 11, 9);
        line(2.5, 6.5, 13.5, 6.5);
        line(2.5, 9.5, 13.5, 9.5);
        line(6.5, 3.5, 6.5, 12.5);
        break;
    case OutputIcon::Chart:
        line(2.5, 2.5, 2.5, 13.5);
        line(2.5, 13.5, 13.5, 13.5);
        path.moveTo(3.5, 4.5);
        path.lineTo(6.5, 4.5);
        path.lineTo(6.5, 7.5);
        path.lineTo(9.5, 7.5);
        path.lineTo(9.5, 10.5);
        path.lineTo(13.5, 10.5);
        break;
    }
    return path;
}

} // namespace

QIcon outputIcon(OutputIcon kind, const QWidget& widget) {
    const int size = widget.style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, &widget);
    const double ratio = widget.devicePixelRatioF();
    QIcon icon;
    for (const auto& [mode, role] :
         {std::pair{QIcon::Normal, QPalette::Text}, std::pair{QIcon::Selected, QPalette::HighlightedText}}) {
        QPixmap pixmap(QSize(size, size) * ratio);
        pixmap.setDevicePixelRatio(ratio);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(size / 16.0, size / 16.0);
        painter.setPen(QPen(widget.palette().color(role), 1.2));
        painter.drawPath(shape(kind));
        painter.end();
        icon.addPixmap(pixmap, mode);
    }
    return icon;
}

} // namespace korvana::desktop
