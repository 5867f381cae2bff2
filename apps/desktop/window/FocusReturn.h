#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QWidget>

namespace korvana::desktop {

/// Gives the keyboard back, after a dialog, to the window that had it before. Left to itself a window manager
/// may choose another, the last that stands over the main window for instance, and some while after the
/// dialog has gone. So it is asked again, until that while is over or the user does something.
class FocusReturn : public QObject {
public:
    explicit FocusReturn(QObject* parent);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void giveBack();
    void stop();

    QHash<QObject*, QPointer<QWidget>> before_; ///< of each open dialog
    QPointer<QWidget> waiting_;                 ///< for the keyboard that a dialog had
    QTimer again_;
    int left_ = 0; ///< so often it is asked yet
};

} // namespace korvana::desktop
