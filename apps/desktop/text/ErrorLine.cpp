#include "apps/desktop/text/ErrorLine.h"

#include "apps/desktop/text/WrappedLabel.h"

#include <QAccessible>
#include <QDialog>
#include <QEvent>
#include <QLayout>

namespace korvana::desktop {

ErrorLine::ErrorLine(QDialog* dialog) : QLabel(dialog) {
    setObjectName(QStringLiteral("error"));
    setWordWrap(true);
    setTextFormat(Qt::PlainText); // names may look like markup
    hide();
    dialog->installEventFilter(this);
}

void ErrorLine::tell(const QString& error) {
    setText(breakable(error));
    setAccessibleName(error);
    takeRoom();
    show();
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

bool ErrorLine::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize && !isHidden()) takeRoom();
    return QLabel::eventFilter(watched, event);
}

void ErrorLine::takeRoom() {
    const QMargins around = window()->layout()->contentsMargins();
    setMinimumHeight(heightForWidth(window()->width() - around.left() - around.right()));
}

} // namespace korvana::desktop
