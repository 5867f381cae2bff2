#pragma once

#include <QPointer>
#include <QWidget>

namespace korvana::desktop {

/// A ring around the list, table or text that has the focus: styles show the focus by a selected row, which
/// an empty list or one without a selection lacks. One ring serves all windows of the program.
class FocusRing : public QObject {
public:
    explicit FocusRing(QObject* parent = nullptr);
    ~FocusRing() override;

    /// The widget with the ring; nullptr while no such widget has the focus.
    [[nodiscard]] QWidget* around() const { return around_.data(); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void follow(QWidget* focused);

    QPointer<QWidget> around_;
    QPointer<QWidget> ring_; ///< a child of the widget that it surrounds
};

} // namespace korvana::desktop
