#pragma once

#include <QPointer>
#include <QWidget>

namespace korvana::desktop {

/// A ring around the list, table or text that has the keyboard: styles show it by a selected row, and an
/// empty list or one without a selection has none. One ring serves all windows of the program, while it
/// lives.
class FocusRing : public QObject {
public:
    explicit FocusRing(QObject* parent = nullptr);
    ~FocusRing() override;

    /// What the ring lies around; nullptr while nothing with a ring has the focus.
    [[nodiscard]] QWidget* around() const { return around_.data(); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void follow(QWidget* focused);

    QPointer<QWidget> around_;
    QPointer<QWidget> ring_; ///< a child of what it lies around
};

} // namespace korvana::desktop
