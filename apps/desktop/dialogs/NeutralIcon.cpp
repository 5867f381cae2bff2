#include "apps/desktop/dialogs/NeutralIcon.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmap>

#include <algorithm>

namespace korvana::desktop {
namespace {

/// Drawn when needed, since the palette and the scale of the screen may change.
class SheetEngine final : public QIconEngine {
public:
    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State /*state*/) override {
        const QPalette palette = QGuiApplication::palette();
        QColor colour =
            palette.color(mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active,
                          mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::WindowText);
        colour.setAlphaF(0.75F);
        const qreal side = std::min(rect.width(), rect.height());
        const qreal unit = side / 16.0;
        painter->save();
        painter->translate(rect.center() + QPointF(0.5, 0.5) - QPointF(side / 2, side / 2));
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(QPen(colour, unit));
        painter->drawRoundedRect(QRectF(3 * unit, 1.5 * unit, 10 * unit, 13 * unit), unit, unit);
        for (const qreal y : {5.0, 8.0, 11.0})
            painter->drawLine(QPointF(5.5 * unit, y * unit), QPointF((y > 10 ? 8.5 : 10.5) * unit, y * unit));
        painter->restore();
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap drawn(size);
        drawn.fill(Qt::transparent);
        QPainter painter(&drawn);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        return drawn;
    }
    [[nodiscard]] QIconEngine* clone() const override { return new SheetEngine; }
};

} // namespace

QIcon neutralIcon() {
    return QIcon(new SheetEngine);
}

} // namespace korvana::desktop
