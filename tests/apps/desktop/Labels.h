#pragma once

#include <QtTest>
#include <QtWidgets>

namespace korvana::desktop {

/// Whether the text of a label that is not hidden contains this.
inline bool says(const QWidget& widget, const QString& part) {
    for (const QLabel* label : widget.findChildren<QLabel*>())
        if (!label->isHidden() && label->text().contains(part)) return true;
    return false;
}

} // namespace korvana::desktop
