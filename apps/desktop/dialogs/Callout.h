#pragma once

#include <QFrame>
#include <QPointer>

class QLabel;

namespace korvana::desktop {

/// A reason, shown beside the widget that it is about. It floats over the dialog: a layout that moved while a
/// mouse button is down would lose the click.
class Callout : public QFrame {
public:
    explicit Callout(QWidget* window);

    void showBeside(QWidget& where, const QString& reason);
    /// The widget that the callout is about, nullptr while none is shown.
    [[nodiscard]] QWidget* subject() const { return isHidden() ? nullptr : subject_.data(); }
    [[nodiscard]] QString text() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void takePlace();

    QLabel* label_;
    QPointer<QWidget> subject_;
};

} // namespace korvana::desktop
