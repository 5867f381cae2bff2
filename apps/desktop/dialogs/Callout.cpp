#include "apps/desktop/dialogs/Callout.h"

#include "apps/desktop/dialogs/FreePlace.h"
#include "apps/desktop/text/WrappedLabel.h"

#include <QAccessible>
#include <QEvent>
#include <QHideEvent>
#include <QLabel>
#include <QPainter>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>
#include <array>
#include <utility>

namespace korvana::desktop {
namespace {

constexpr std::array widths{60, 40, 26, 18}; ///< in letters

/// A light red in light themes, a dark one in dark themes, so that the theme's text colour is readable on it.
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
    return text_;
}

void Callout::showBeside(QWidget& where, const QString& reason) {
    subject_ = &where;
    text_ = reason;
    label_->setText(breakable(reason));
    setAccessibleName(reason);
    takePlace();
    show();
    raise();
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

QSize Callout::sizeFor(int letters) const {
    const int letter = fontMetrics().averageCharWidth();
    const QMargins around = layout()->contentsMargins();
    const int aside = around.left() + around.right();
    const int whole = label_->fontMetrics().horizontalAdvance(label_->text()) + 4 * letter + aside;
    const int width = std::max(std::min(whole, letters * letter), aside + 1);
    return {width, label_->heightForWidth(width - aside) + around.top() + around.bottom()};
}

QRect Callout::placeIn(const QSize& room, Reach reach) const {
    for (const int letters : widths) {
        const QRect place = freePlace(*parentWidget(), *this, *subject_, sizeFor(letters), room, reach);
        if (!place.isEmpty()) return place;
    }
    return {};
}

QSize Callout::ownSize() const {
    const QSize now = parentWidget()->size();
    return given_.contains(now) ? own_ : now - grown_;
}

void Callout::growWindow(const QSize& own, const QSize& by) {
    QWidget& window = *parentWidget();
    QLayout* layout = window.layout();
    own_ = own;
    given_.append(own);
    if (by == grown_ || layout == nullptr) return;
    QMargins margins = layout->contentsMargins();
    margins.setRight(margins.right() + by.width() - grown_.width());
    margins.setBottom(margins.bottom() + by.height() - grown_.height());
    grown_ = by;
    layout->setContentsMargins(margins);
    layout->activate(); // updates the window's minimum size, and enlarges the window if it is smaller
    given_.append(window.size());
    window.resize(own + by);
    given_.append(window.size());
    layout->activate();
}

QSize Callout::screenRoom() const {
    const QWidget& window = *parentWidget();
    if (window.isMaximized() || window.isFullScreen()) return {0, 0};
    const QPoint corner = window.screen()->availableGeometry().bottomRight();
    const QPoint more = corner - window.frameGeometry().bottomRight();
    return {std::max(more.x(), 0), std::max(more.y(), 0)};
}

void Callout::takePlace() {
    if (subject_.isNull() || placing_) return;
    placing_ = true;
    label_->setMinimumWidth(0);
    const QSize now = parentWidget()->size();
    const QSize own = ownSize();
    if (!given_.contains(now)) given_.clear(); // the user has chosen another size since
    const QSize most = own.expandedTo(now + screenRoom());
    const QSize wider(most.width(), own.height());
    const QSize higher(own.width(), most.height());
    const QSize endless(own.width(), QWIDGETSIZE_MAX);
    const std::pair<QSize, Reach> ways[] = {{now, Reach::Touching},    {own, Reach::Touching},
                                            {wider, Reach::Touching},  {wider, Reach::InItsRow},
                                            {higher, Reach::Touching}, {own, Reach::Anywhere},
                                            {endless, Reach::Anywhere}};
    for (const auto& [room, reach] : ways) {
        const QRect place = placeIn(room, reach);
        if (place.isEmpty()) continue;
        const int margin = fontMetrics().height() / 4;
        const QSize needed(place.right() + 1 + margin, place.bottom() + 1 + margin);
        growWindow(own, room != now ? needed.expandedTo(own) - own : now - own);
        setGeometry(place);
        break;
    }
    placing_ = false;
}

void Callout::hideEvent(QHideEvent* event) {
    QFrame::hideEvent(event);
    if (event->spontaneous() || placing_) return;
    growWindow(ownSize(), QSize(0, 0));
    given_.clear();
}

bool Callout::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize && !isHidden() && !given_.contains(parentWidget()->size()))
        takePlace();
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
