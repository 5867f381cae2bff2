#include "apps/desktop/window/DialogPlaces.h"

#include <QGuiApplication>
#include <QLayout>
#include <QScreen>
#include <QWidget>
#include <QWindow>

#include <algorithm>

namespace korvana::desktop {
namespace {

/// The frame that the window manager draws. A maximized window may have none at its sides.
QMargins frameOf(const QWidget& window) {
    const QWindow* handle = window.windowHandle();
    return handle != nullptr ? handle->frameMargins() : QMargins{};
}

const QScreen* screenOf(const QPoint& corner, const QWidget& window) {
    const QScreen* at = QGuiApplication::screenAt(corner);
    return at != nullptr ? at : window.screen();
}

} // namespace

void DialogPlaces::remember(const QWidget& dialog) {
    corner_ = dialog.geometry().topLeft();
    frame_ = frame_ | frameOf(dialog);
    if (dialog.size() != given_) sizes_[dialog.windowTitle()] = dialog.size();
}

void DialogPlaces::place(QWidget& dialog, const QWidget& window) {
    // The first one's frame is not known yet; so far from the edge it fits as well.
    const QPoint first(2 * window.fontMetrics().height(), window.height() / 8);
    const QPoint wanted = corner_.value_or(window.geometry().topLeft() + first);
    frame_ = frame_ | frameOf(window);
    const QRect room = screenOf(wanted, window)->availableGeometry().marginsRemoved(frame_);
    // A part that asked for more room since it was laid out is heard by its own layout, but not by those
    // around that while they are not visible.
    for (QWidget* part : dialog.findChildren<QWidget*>())
        if (part->layout() != nullptr) part->updateGeometry();
    dialog.adjustSize();
    const auto resized = sizes_.find(dialog.windowTitle());
    // Left to itself a window takes two thirds of the screen at most, also where that cuts it.
    const QSize wanting = dialog.size().expandedTo(dialog.sizeHint());
    const QSize size = (resized != sizes_.end() ? resized->second : wanting)
                           .boundedTo(room.size())
                           .expandedTo(dialog.minimumSizeHint());
    // What is too large for the screen at least shows its upper left part.
    const int x = std::max(std::min(wanted.x(), room.right() + 1 - size.width()), room.left());
    const int y = std::max(std::min(wanted.y(), room.bottom() + 1 - size.height()), room.top());
    dialog.setGeometry(QRect({x, y}, size));
    given_ = dialog.size();
}

} // namespace korvana::desktop
