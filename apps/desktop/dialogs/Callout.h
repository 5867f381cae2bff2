#pragma once

#include "apps/desktop/dialogs/FreePlace.h"

#include <QFrame>
#include <QList>
#include <QPointer>

class QLabel;

namespace korvana::desktop {

/// A reason shown beside the widget that it is about, where it covers nothing else. It floats over the
/// dialog: if the layout moved while a mouse button is down, the click would be lost. If there is no room,
/// the dialog grows to the right or downwards while the reason is shown.
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
    /// Its size with lines of at most so many characters.
    [[nodiscard]] QSize sizeFor(int letters) const;
    /// A place in a window of this size, empty when there is none.
    [[nodiscard]] QRect placeIn(const QSize& room, Reach reach) const;
    /// How far the window may grow.
    [[nodiscard]] QSize screenRoom() const;
    /// The window's size without what it grew by.
    [[nodiscard]] QSize ownSize() const;
    void growWindow(const QSize& own, const QSize& by);

    QLabel* label_;
    QString text_;
    QPointer<QWidget> subject_;
    QSize grown_{0, 0}; ///< what the window grew by to make room
    QSize own_;         ///< the window's size without that, when it grew
    /// The sizes that the window had or was given since the callout is shown. A slow window manager still
    /// reports the earlier ones when a later one was asked for: none of them was chosen by the user.
    QList<QSize> given_;
    bool placing_ = false;
};

} // namespace korvana::desktop
