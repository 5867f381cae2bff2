#pragma once

#include <QMargins>
#include <QPoint>
#include <QSize>
#include <QString>

#include <map>
#include <optional>

class QWidget;

namespace korvana::desktop {

/// Where the dialogs of an analysis are placed: each where the previous one was left, in the size that the
/// user gave it, and on the screen.
///
/// Positions are those of the contents, not of the frame: a window manager reports the frame's size only
/// after the window was shown, and mixing the two would move every dialog a little.
class DialogPlaces {
public:
    /// Remembers the place of a dialog that is about to close.
    void remember(const QWidget& dialog);
    /// Sets the size and place of a dialog that was not shown yet. The first one is placed at the left of
    /// `window`, so that the results appearing at the right are visible.
    void place(QWidget& dialog, const QWidget& window);

private:
    std::optional<QPoint> corner_;
    QMargins frame_; ///< the widest seen so far
    QSize given_;
    std::map<QString, QSize> sizes_; ///< of dialogs that the user made larger or smaller, by title
};

} // namespace korvana::desktop
