#include "apps/desktop/window/FocusReturn.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>

namespace korvana::desktop {

FocusReturn::FocusReturn(QObject* parent) : QObject(parent) {
    qApp->installEventFilter(this);
}

bool FocusReturn::eventFilter(QObject* watched, QEvent* event) {
    const bool shown = event->type() == QEvent::Show;
    if ((!shown && event->type() != QEvent::Hide) || event->spontaneous()) return false;
    auto* dialog = qobject_cast<QDialog*>(watched);
    if (dialog == nullptr) return false;
    if (shown) {
        if (dialog->isModal()) before_.insert(dialog, QApplication::activeWindow());
        return false;
    }
    const QPointer<QWidget> before = before_.take(dialog);
    if (before.isNull()) return false;
    // Once the window manager has heard that the dialog is gone, and has made its own choice.
    QMetaObject::invokeMethod(
        this,
        [before] {
            const QWidget* modal = QApplication::activeModalWidget(); // another may have opened
            if (!before.isNull() && before->isVisible() && (modal == nullptr || modal == before))
                before->activateWindow();
        },
        Qt::QueuedConnection);
    return false;
}

} // namespace korvana::desktop
