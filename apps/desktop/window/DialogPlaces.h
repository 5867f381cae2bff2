#pragma once

#include <QMargins>
#include <QPoint>
#include <QSize>
#include <QString>

#include <map>
#include <optional>

class QWidget;

namespace korvana::desktop {

/// Where the dialogs of an analysis stand: each where the one before was left, in the size that it was given,
/// and on the screen.
///
/// Places are those of the contents, which need no knowledge of the frame: a window manager tells its size
/// only after the window was shown, and counted in once and left out once it moves every dialog a little.
class DialogPlaces {
public:
    /// Takes note of a dialog that is about to go.
    void remember(const QWidget& dialog);
    /// Gives a dialog that was not shown yet its size and place. The first one stands at the left of
    /// `window`, so that results are seen to appear at the right.
    void place(QWidget& dialog, const QWidget& window);

private:
    std::optional<QPoint> corner_;
    QMargins frame_; ///< the widest seen so far
    QSize given_;
    std::map<QString, QSize> sizes_; ///< of dialogs that the user made larger or smaller, by title
};

} // namespace korvana::desktop
