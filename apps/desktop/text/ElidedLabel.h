#pragma once

#include <QLabel>

namespace korvana::desktop {

/// A text in one line. What does not fit is left out of its middle, since similar names mostly differ at
/// their ends; the tooltip then has the whole text. It uses the room there is and never widens a window.
class ElidedLabel final : public QLabel {
public:
    explicit ElidedLabel(QWidget* parent = nullptr);

    /// @param kept  the last part of the text, which is never cut
    void setText(const QString& text, const QString& kept = {});
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    /// The text as it is shown now.
    [[nodiscard]] QString shownText() const;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QString kept_;
};

} // namespace korvana::desktop
