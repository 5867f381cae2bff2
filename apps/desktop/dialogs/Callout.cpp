#include "apps/desktop/dialogs/Callout.h"

#include <QAccessible>
#include <QEvent>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>

namespace korvana::desktop {
namespace {

/// A light red on light themes, a dark one on dark ones, so that the theme's own text colour reads on it.
QColor tinted(const QColor& base, double share) {
    const QColor red(0xd0, 0x30, 0x30);
    const auto mix = [share](int own, int other) { return static_cast<int>(own + share * (other - own)); };
    return {mix(base.red(), red.red()), mix(base.green(), red.green()), mix(base.blue(), red.blue())};
}

} // namespace

Callout::Callout(QWidget* window) : QFrame(window), label_(new QLabel(this)) {
    setObjectName(QStringLiteral("callout"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(label_);
    label_->setWordWrap(true);
    label_->setTextFormat(Qt::PlainText);
    label_->setForegroundRole(QPalette::Text);
    window->installEventFilter(this);
    hide();
}

QString Callout::text() const {
    return label_->text();
}

void Callout::showBeside(QWidget& where, const QString& reason) {
    subject_ = &where;
    label_->setText(reason);
    setAccessibleName(reason);
    takePlace();
    show();
    raise();
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void Callout::takePlace() {
    if (subject_.isNull()) return;
    const QWidget& window = *parentWidget();
    const int margin = fontMetrics().height() / 4;
    const int widest = std::max(window.width() - 2 * margin, 1);
    label_->setMinimumWidth(0);
    const int wanted =
        label_->fontMetrics().horizontalAdvance(label_->text()) + 4 * fontMetrics().averageCharWidth();
    const QMargins around = layout()->contentsMargins();
    const int width =
        std::min({wanted + around.left() + around.right(), widest, fontMetrics().averageCharWidth() * 60});
    const int height =
        label_->heightForWidth(width - around.left() - around.right()) + around.top() + around.bottom();
    const QPoint corner = subject_->mapTo(&window, QPoint(0, 0));
    const int below = corner.y() + subject_->height() + margin / 2;
    const int y = below + height <= window.height() ? below : std::max(corner.y() - height - margin / 2, 0);
    setGeometry(std::clamp(corner.x(), margin, std::max(window.width() - width - margin, margin)), y, width,
                height);
}

bool Callout::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize && !isHidden()) takePlace();
    return QFrame::eventFilter(watched, event);
}

void Callout::mousePressEvent(QMouseEvent* /*event*/) {
    hide();
}

void Callout::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor base = palette().color(QPalette::Base);
    painter.setPen(QPen(tinted(base, 0.7), 1.0));
    painter.setBrush(tinted(base, 0.15));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
}

} // namespace korvana::desktop
