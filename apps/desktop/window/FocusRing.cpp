#include "apps/desktop/window/FocusRing.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QEvent>
#include <QPainter>

namespace korvana::desktop {
namespace {

class Ring final : public QWidget {
public:
    explicit Ring(QWidget* around) : QWidget(around) {
        setObjectName(QStringLiteral("focusRing"));
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setFocusPolicy(Qt::NoFocus);
        setGeometry(around->rect());
        show();
        raise();
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
        painter.drawRect(rect().adjusted(1, 1, -1, -1));
    }
};

/// Lists, tables and texts; not areas that only scroll a page, nor the popup list of a combo box.
bool wantsRing(const QWidget* widget) {
    return qobject_cast<const QAbstractScrollArea*>(widget) != nullptr &&
           widget->focusPolicy() != Qt::NoFocus && !widget->window()->windowFlags().testFlag(Qt::Popup);
}

} // namespace

FocusRing::FocusRing(QObject* parent) : QObject(parent) {
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* focused) { follow(focused); });
    follow(QApplication::focusWidget());
}

FocusRing::~FocusRing() {
    follow(nullptr);
}

void FocusRing::follow(QWidget* focused) {
    QWidget* wanted = wantsRing(focused) ? focused : nullptr;
    if (wanted == around_ && (wanted == nullptr || ring_ != nullptr)) return;
    if (around_ != nullptr) around_->removeEventFilter(this);
    delete ring_.data();
    around_ = wanted;
    if (wanted == nullptr) return;
    ring_ = new Ring(wanted);
    wanted->installEventFilter(this);
}

bool FocusRing::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize && watched == around_ && ring_ != nullptr)
        ring_->setGeometry(around_->rect());
    return QObject::eventFilter(watched, event);
}

} // namespace korvana::desktop
