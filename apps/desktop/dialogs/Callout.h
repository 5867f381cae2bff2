#pragma once

#include "apps/desktop/dialogs/FreePlace.h"

#include <QFrame>
#include <QPointer>

class QLabel;

namespace korvana::desktop {

/// A reason, shown at the widget that it is about, where it covers nothing else. It floats over the dialog: a
/// layout that moved while a mouse button is down would lose the click. Where the dialog has no room there it
/// grows, at its right end or its lower one, for as long as the reason is shown.
class Callout : public QFrame {
public:
    explicit Callout(QWidget* window);

    void showBeside(QWidget& where, const QString& reason);
    /// The widget that the callout is about, nullptr while none is shown.
    [[nodiscard]] QWidget* subject() const { return isHidden() ? nullptr : subject_.data(); }
    [[nodiscard]] QString text() const;

protected:
    void hideEvent(QHideEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void takePlace();
    /// Its size when a line has no more than so many letters.
    [[nodiscard]] QSize sizeFor(int letters) const;
    /// A place in a window of this size, empty when there is none.
    [[nodiscard]] QRect placeIn(const QSize& room, Reach reach) const;
    /// How far the window may grow.
    [[nodiscard]] QSize screenRoom() const;
    void growWindow(const QSize& by);

    QLabel* label_;
    QString text_;
    QPointer<QWidget> subject_;
    QSize grown_{0, 0}; ///< what the window grew by to make room
    bool placing_ = false;
};

} // namespace korvana::desktop
