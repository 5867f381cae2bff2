#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QKeyEvent>
#include <QKeySequence>
#include <QObject>
#include <QPointer>
#include <QShortcutEvent>
#include <QWidget>

#include <functional>
#include <utility>

namespace korvana::desktop {

/// While it lives, mouse and keyboard input reaches only one window of the program: that of a long operation.
/// A modal window would do the same, but then a request to close the main window would never arrive.
class InputGate : public QObject {
public:
    static QKeySequence quitKey() { return {Qt::CTRL | Qt::Key_Q}; }

    /// @param open     the window that receives input
    /// @param main     the window that can still be asked to close, also by Ctrl+Q; may be nullptr
    /// @param closing  called when `main` is asked to close, instead of `main` itself or a dialog beside it;
    /// if empty, they get the request themselves
    InputGate(QWidget& open, QWidget* main, std::function<void()> closing = {})
        : open_(&open), main_(main), closing_(std::move(closing)) {
        QCoreApplication::instance()->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        switch (event->type()) {
        case QEvent::Close:
            if (!closing_ || !watched->isWidgetType() || isInside(watched)) return false;
            if (watched != main_ && !event->spontaneous()) return false;
            event->ignore();
            if (watched == main_) closing_();
            return true;
        case QEvent::Shortcut:
            return !isInside(watched) && dynamic_cast<QShortcutEvent*>(event)->key() != quitKey();
        case QEvent::KeyPress: {
            if (!watched->isWidgetType()) return false;
            const auto* key = dynamic_cast<QKeyEvent*>(event);
            if (main_ != nullptr && QKeySequence(key->keyCombination()) == quitKey()) {
                main_->close();
                return true;
            }
            return !isInside(watched);
        }
        case QEvent::ShortcutOverride:
        case QEvent::KeyRelease:
        case QEvent::InputMethod:
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::Wheel:
        case QEvent::ContextMenu:
        case QEvent::TouchBegin:
        case QEvent::TouchUpdate:
        case QEvent::TouchEnd:
        case QEvent::DragEnter:
        case QEvent::DragMove:
        case QEvent::Drop:
            return watched->isWidgetType() && !isInside(watched);
        default:
            return false;
        }
    }

private:
    bool isInside(QObject* watched) const {
        const auto* widget = qobject_cast<QWidget*>(watched);
        if (widget == nullptr)
            widget = qobject_cast<QWidget*>(watched->parent()); // the event is for an action or a shortcut
        return widget != nullptr && widget->window() == open_;
    }

    QPointer<QWidget> open_;
    QPointer<QWidget> main_;
    std::function<void()> closing_;
};

} // namespace korvana::desktop
