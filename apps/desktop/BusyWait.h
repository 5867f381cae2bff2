#pragma once

#include "apps/desktop/InputGate.h"

#include <QApplication>
#include <QEventLoop>
#include <QPointer>
#include <QProgressDialog>
#include <QTimer>
#include <QWidget>

#include <functional>
#include <utility>

namespace korvana::desktop {

/// Waits in the window's thread for work in another thread: the window repaints, but takes no input, and
/// after a moment a progress dialog offers to stop. A request to close the window stops as well.
class BusyWait {
public:
    /// @param over  the window that waits, or one of its widgets; may be nullptr
    /// @param stop  asks the work to stop; `end` must be called nevertheless
    BusyWait(QWidget* over, const QString& title, const QString& text, std::function<void()> stop)
        : window_(over == nullptr ? nullptr : over->window()), stop_(std::move(stop)),
          sign_(text, QProgressDialog::tr("Cancel"), 0, 0, over) {
        sign_.setWindowTitle(title);
        sign_.setMinimumDuration(never); // it is shown by `run`
        sign_.setMinimumWidth(sign_.fontMetrics().averageCharWidth() * 50);
        QObject::connect(&sign_, &QProgressDialog::canceled, &sign_, [this] { stop_(); });
    }

    void setText(const QString& text) { sign_.setLabelText(text); }
    void end() {
        ended_ = true;
        loop_.quit();
    }

    /// Returns after `end` was called; false when the program ends before that.
    bool run() {
        if (ended_) return true;
        const InputGate gate(sign_, window_, [this] {
            closes_ = true;
            stop_();
        });
        // Until the progress dialog is there to receive clicks, they wait in the queue. Shown at once it
        // would only flicker.
        QTimer::singleShot(patience, &loop_, &QEventLoop::quit);
        loop_.exec(QEventLoop::ExcludeUserInputEvents);
        if (!ended_) {
            const QPointer<QWidget> active = QApplication::activeWindow();
            sign_.show();
            loop_.exec();
            sign_.hide();
            if (active != nullptr) active->activateWindow(); // the focus goes back where it was
        }
        return ended_;
    }

    /// Whether the window was asked to close meanwhile.
    [[nodiscard]] bool closes() const { return closes_; }
    /// Closes the window if it was asked to close; to be called once the waiting function is done.
    void closeIfWanted() const {
        if (closes_ && window_ != nullptr)
            QMetaObject::invokeMethod(window_, &QWidget::close, Qt::QueuedConnection);
    }

private:
    static constexpr int patience = 150; // milliseconds
    static constexpr int never = 1 << 30;

    QWidget* window_;
    std::function<void()> stop_;
    QProgressDialog sign_;
    QEventLoop loop_;
    bool ended_ = false;
    bool closes_ = false;
};

} // namespace korvana::desktop
