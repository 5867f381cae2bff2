#pragma once
// Helpers for modal windows: answers to those that an action opens, and an end to unanswered ones.

#include "apps/desktop/text/WrappedLabel.h"

#include <QtTest>
#include <QtWidgets>

#include <deque>
#include <functional>
#include <gtest/gtest.h>

namespace korvana::desktop {

/// What a message box says.
inline QString textOf(const QMessageBox& box) {
    return unbroken(box.text() + QLatin1Char('\n') + box.informativeText());
}

/// While it lives, closes every modal window that has been open for too long, and fails the test that left it
/// open, with the text of the window. Also fails a test in which a message box is shown that has nothing for
/// Escape and its close button to answer, whichever box it is.
class ModalWatch : public QObject {
public:
    static constexpr qint64 milliseconds = 20'000;

    ModalWatch() {
        QObject::connect(&pulse_, &QTimer::timeout, [this] { look(); });
        pulse_.start(100);
        qApp->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        const auto* box = event->type() == QEvent::Show ? qobject_cast<QMessageBox*>(watched) : nullptr;
        const bool own = box != nullptr && qobject_cast<QFileDialog*>(box->parent()) == nullptr;
        if (own && box->escapeButton() == nullptr)
            ADD_FAILURE() << "not shown by showBox: " << textOf(*box).toStdString();
        return false;
    }

private:
    void look() {
        QWidget* window = QApplication::activeModalWidget();
        if (window != seen_) since_.start();
        seen_ = window;
        if (window == nullptr || !since_.hasExpired(milliseconds)) return;
        if (++ended_ == 10) qFatal("modal windows come up again and again");
        const auto* box = qobject_cast<QMessageBox*>(window);
        ADD_FAILURE() << "nobody answered " << window->metaObject()->className() << " '"
                      << window->windowTitle().toStdString() << "' "
                      << (box == nullptr ? "" : textOf(*box).toStdString());
        for (QWidget* each : QApplication::topLevelWidgets()) {
            if (!each->isModal() || !each->isVisible()) continue;
            if (auto* dialog = qobject_cast<QDialog*>(each))
                dialog->done(QDialog::Rejected);
            else
                each->close();
        }
    }

    QTimer pulse_;
    QPointer<QWidget> seen_;
    QElapsedTimer since_;
    int ended_ = 0;
};

/// Runs an action that opens modal windows, nested or in sequence, and applies each answer, a function of a
/// window of some class, to the next window of that class. Every answer must be used.
template <class... Answers>
void answering(const std::function<void()>& action, Answers... answers) {
    using Answer = std::function<void()>; // for one window; empty if that is not of the answer's class
    std::deque<std::function<Answer(QWidget*)>> left;
    const auto add = [&left]<class Window>(std::function<void(Window&)> answer) {
        left.push_back([answer](QWidget* window) -> Answer {
            auto* fitting = qobject_cast<Window*>(window);
            if (fitting == nullptr) return {};
            return [answer, fitting] { answer(*fitting); };
        });
    };
    (add(std::function(answers)), ...);
    const QObject life; // stops the polling
    QPointer<QWidget> answered;
    std::function<void()> look = [&] {
        // Polls again by a new timer each time, since an answer may wait for windows that it opens.
        QTimer::singleShot(5, &life, look);
        QWidget* window = QApplication::activeModalWidget();
        if (window == answered) return;
        answered = nullptr;
        if (window == nullptr || left.empty()) return;
        if (QApplication::activeWindow() != window) { // before that it gets no shortcuts
            window->activateWindow();
            return;
        }
        const Answer answer = left.front()(window);
        if (!answer) return;
        left.pop_front();
        answered = window;
        answer();
    };
    look();
    action();
    EXPECT_TRUE(QTest::qWaitFor([&left] { return left.empty(); })) << left.size() << " windows did not open";
}

/// An answer to a message box: its button.
inline auto pressing(QMessageBox::StandardButton button) {
    return [button](QMessageBox& box) {
        ASSERT_NE(box.button(button), nullptr) << box.text().toStdString();
        box.button(button)->click();
    };
}

/// An answer to a file dialog: a path.
inline auto naming(const QString& path) {
    return [path](QFileDialog& dialog) {
        // selectFile does not change a name field that has the focus.
        dialog.findChild<QLineEdit*>("fileNameEdit")->setText(path);
        QMetaObject::invokeMethod(&dialog, "accept");
    };
}

/// Closes the message box that an action shows, and returns its text.
inline QString boxOf(const std::function<void()>& action) {
    QString shown;
    answering(action, [&shown](QMessageBox& box) {
        shown = textOf(box);
        box.accept();
    });
    return shown;
}

} // namespace korvana::desktop
