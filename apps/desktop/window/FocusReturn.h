#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QWidget>

namespace korvana::desktop {

/// Gives the keyboard back, after a dialog, to the window that had it before. Left to itself a window manager
/// may choose another, the last that stands over the main window for instance.
class FocusReturn : public QObject {
public:
    explicit FocusReturn(QObject* parent);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QHash<QObject*, QPointer<QWidget>> before_; ///< of each open dialog
};

} // namespace korvana::desktop
