#include "apps/desktop/dialogs/Callout.h"

#include <QAccessible>
#include <QEvent>
#include <QHideEvent>
#include <QLabel>
#include <QPainter>
#include <QScrollArea>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <limits>
#include <vector>

namespace korvana::desktop {
namespace {

/// A light red on light themes, a dark one on dark ones, so that the theme's own text colour reads on it.
QColor tinted(const QColor& base, double share) {
    const QColor red(0xd0, 0x30, 0x30);
    const auto mix = [share](int own, int other) { return static_cast<int>(own + share * (other - own)); };
    return {mix(base.red(), red.red()), mix(base.green(), red.green()), mix(base.blue(), red.blue())};
}

/// What must not be covered: everything that shows something of its own.
std::vector<QRect> takenPlaces(const QWidget& window, const QWidget& but) {
    std::vector<QRect> places;
    for (const QWidget* one : window.findChildren<QWidget*>()) {
        if (!one->isVisible() || one == &but || but.isAncestorOf(one)) continue;
        const auto* text = qobject_cast<const QLabel*>(one);
        const bool shows = (text != nullptr && !text->text().isEmpty()) ||
                           one->focusPolicy() != Qt::NoFocus || qobject_cast<const QTabBar*>(one) != nullptr;
        // A scroll area takes the focus for what stands in it, which is looked at by itself.
        const auto* area = qobject_cast<const QScrollArea*>(one);
        if (!shows || area != nullptr || qobject_cast<const QTabWidget*>(one) != nullptr) continue;
        places.emplace_back(one->mapTo(&window, QPoint(0, 0)), one->size());
    }
    return places;
}

/// How far apart two places are; one below or above counts as nearer than one aside.
int gap(const QRect& a, const QRect& b) {
    const int across = std::max({a.left() - b.left(), b.left() - a.right(), 0});
    const int down = std::max({a.top() - b.bottom(), b.top() - a.bottom(), 0});
    return across + down;
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

QRect Callout::freePlace(int width) const {
    const QWidget& window = *parentWidget();
    const int margin = fontMetrics().height() / 4;
    const QMargins around = layout()->contentsMargins();
    const int inner = width - around.left() - around.right();
    const QSize size(width, label_->heightForWidth(inner) + around.top() + around.bottom());
    const std::vector<QRect> taken = takenPlaces(window, *this);
    const QRect subject(subject_->mapTo(&window, QPoint(0, 0)), subject_->size());
    // Where its edges would touch those of something, the places worth trying end.
    std::vector<int> xs{margin, window.width() - margin - width, subject.left()};
    std::vector<int> ys{margin, window.height() - margin - size.height()};
    for (const QRect& one : taken) {
        xs.insert(xs.end(), {one.left(), one.right() + 1 + margin, one.left() - margin - width});
        ys.insert(ys.end(),
                  {one.top(), one.bottom() + 1 + margin / 2, one.top() - margin / 2 - size.height()});
    }
    const QRect inside = window.rect().marginsRemoved({margin, margin, margin, margin});
    QRect best;
    int nearest = std::numeric_limits<int>::max();
    for (const int y : ys) {
        for (const int x : xs) {
            const QRect place({x, y}, size);
            const int distance = gap(place, subject);
            if (distance >= nearest || !inside.contains(place)) continue;
            if (std::any_of(taken.begin(), taken.end(),
                            [&](const QRect& one) { return one.intersects(place); }))
                continue;
            best = place;
            nearest = distance;
        }
    }
    return best;
}

void Callout::growWindow(int by) {
    QWidget& window = *parentWidget();
    QLayout* layout = window.layout();
    if (by == 0 || layout == nullptr) return;
    grown_ += by;
    QMargins margins = layout->contentsMargins();
    margins.setBottom(margins.bottom() + by);
    layout->setContentsMargins(margins);
    layout->activate(); // tells the window how small it may be now
    window.resize(window.width(), window.height() + by);
    layout->activate();
}

void Callout::takePlace() {
    if (subject_.isNull() || placing_) return;
    placing_ = true;
    growWindow(-grown_);
    const QWidget& window = *parentWidget();
    const int letter = fontMetrics().averageCharWidth();
    label_->setMinimumWidth(0);
    const QMargins around = layout()->contentsMargins();
    const int wanted =
        label_->fontMetrics().horizontalAdvance(label_->text()) + 4 * letter + around.left() + around.right();
    QRect place;
    for (const int letters : {60, 40, 26, 18}) {
        place = freePlace(std::min({wanted, letters * letter, window.width() - fontMetrics().height()}));
        if (!place.isEmpty()) break;
    }
    if (place.isEmpty()) {
        const int margin = fontMetrics().height() / 4;
        const int width = std::max(std::min(wanted, window.width() - 2 * margin), 1);
        const int height =
            label_->heightForWidth(width - around.left() - around.right()) + around.top() + around.bottom();
        growWindow(height + margin);
        place = {margin, window.height() - height - margin, width, height};
    }
    setGeometry(place);
    placing_ = false;
}

void Callout::hideEvent(QHideEvent* event) {
    QFrame::hideEvent(event);
    if (!event->spontaneous() && !placing_) growWindow(-grown_);
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
