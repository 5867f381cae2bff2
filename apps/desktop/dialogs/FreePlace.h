#pragma once

#include <QRect>
#include <QSize>

class QWidget;

namespace korvana::desktop {

/// How far from its subject a place may be.
enum class Reach {
    Touching, ///< beside it, above or below, and nothing between
    InItsRow, ///< at its height, whatever is between
    Anywhere
};

/// The place of this size that is nearest to `subject` and covers nothing that `window` shows, `but` aside;
/// empty when there is none. `room` is the window's size, or a larger size that the window could be given.
[[nodiscard]] QRect freePlace(const QWidget& window, const QWidget& but, const QWidget& subject,
                              const QSize& size, const QSize& room, Reach reach);

} // namespace korvana::desktop
