#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QWidget>

namespace korvana::desktop {

/// Gives the focus back, after a dialog, to the window that had it before. A window manager left to itself
/// may choose another window, and may do so some time after the dialog has closed. So the request is repeated
/// until that time is over or the user does something.
class FocusReturn : public QObject {
public:
    explicit FocusReturn(QObject* parent);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void giveBack();
    void stop();

    QHash<QObject*, QPointer<QWidget>> before_; ///< of each open dialog
    QPointer<QWidget> waiting_;                 ///< for the focus that a dialog had
    QTimer again_;
    int left_ = 0; ///< requests still to be made
};

} // namespace korvana::desktop
