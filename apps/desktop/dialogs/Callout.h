#pragma once

#include <QFrame>
#include <QPointer>

class QLabel;

namespace korvana::desktop {

/// A reason, shown as near to the widget that it is about as nothing else is covered. It floats over the
/// dialog: a layout that moved while a mouse button is down would lose the click. Where the dialog has no
/// room it grows at its lower end, and shrinks again.
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
    /// A place of this width that covers nothing, empty when there is none.
    [[nodiscard]] QRect freePlace(int width) const;
    void growWindow(int by);

    QLabel* label_;
    QPointer<QWidget> subject_;
    int grown_ = 0; ///< pixels that the window grew to make room
    bool placing_ = false;
};

} // namespace korvana::desktop
