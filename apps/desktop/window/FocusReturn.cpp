#include "apps/desktop/window/FocusReturn.h"

#include <QApplication>
#include <QEvent>

#include <chrono>

namespace korvana::desktop {
namespace {

constexpr int times = 8;
constexpr std::chrono::milliseconds apart{50};

} // namespace

FocusReturn::FocusReturn(QObject* parent) : QObject(parent) {
    again_.setSingleShot(true);
    connect(&again_, &QTimer::timeout, this, &FocusReturn::giveBack);
    qApp->installEventFilter(this);
}

bool FocusReturn::eventFilter(QObject* watched, QEvent* event) {
    const bool typed = event->type() == QEvent::KeyPress || event->type() == QEvent::MouseButtonPress;
    if (typed && event->spontaneous()) stop();
    if (event->spontaneous()) return false;
    auto* window = qobject_cast<QWidget*>(watched);
    if (window == nullptr || (window->windowType() != Qt::Window && window->windowType() != Qt::Dialog))
        return false;
    if (event->type() == QEvent::Show) {
        // In a sequence of dialogs the focus returns to what had it before the first.
        if (window->isModal())
            before_.insert(window, waiting_.isNull() ? QApplication::activeWindow() : waiting_.data());
        stop(); // a window that opens takes the focus
    }
    if (event->type() != QEvent::Hide) return false;
    const QPointer<QWidget> before = before_.take(window);
    if (before.isNull()) return false;
    waiting_ = before;
    left_ = times;
    again_.start(0); // once the window manager knows that the dialog is gone
    return false;
}

void FocusReturn::giveBack() {
    const QWidget* modal = QApplication::activeModalWidget(); // another may have opened
    if (waiting_.isNull() || !waiting_->isVisible() || (modal != nullptr && modal != waiting_)) return stop();
    if (QApplication::activeWindow() != waiting_ || left_ == times) waiting_->activateWindow();
    if (--left_ == 0) return stop();
    again_.start(apart);
}

void FocusReturn::stop() {
    again_.stop();
    waiting_.clear();
}

} // namespace korvana::desktop
