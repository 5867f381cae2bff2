#include "apps/desktop/text/ElidedLabel.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

#include <algorithm>

namespace korvana::desktop {
namespace {

constexpr int most = 60; ///< characters that it asks room for
constexpr int least = 8;

} // namespace

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText); // names may look like markup
}

void ElidedLabel::setText(const QString& text, const QString& kept) {
    kept_ = kept;
    QLabel::setText(text + kept);
}

QSize ElidedLabel::sizeHint() const {
    const QSize hint = QLabel::sizeHint();
    return {std::min(hint.width(), most * fontMetrics().averageCharWidth()), hint.height()};
}

QSize ElidedLabel::minimumSizeHint() const {
    const QSize hint = QLabel::minimumSizeHint();
    const int own = fontMetrics().horizontalAdvance(kept_) + least * fontMetrics().averageCharWidth();
    return {std::min(hint.width(), own), hint.height()};
}

QString ElidedLabel::shownText() const {
    const QString cuttable = text().chopped(kept_.size());
    const int room = contentsRect().width() - 2 * margin() - fontMetrics().horizontalAdvance(kept_);
    return fontMetrics().elidedText(cuttable, Qt::ElideMiddle, room) + kept_;
}

bool ElidedLabel::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip || shownText() == text()) return QLabel::event(event);
    const QString remark = toolTip().isEmpty() ? QString{} : QLatin1Char('\n') + toolTip();
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), text() + remark, this);
    return true;
}

void ElidedLabel::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const int place = margin();
    style()->drawItemText(&painter, contentsRect().adjusted(place, place, -place, -place),
                          static_cast<int>(alignment()) | Qt::TextSingleLine, palette(), isEnabled(),
                          shownText(), foregroundRole());
}

} // namespace korvana::desktop
