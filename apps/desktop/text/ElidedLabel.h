#pragma once

#include <QLabel>

namespace korvana::desktop {

/// A text in one line. What does not fit is left out in its middle, where names that begin alike mostly are
/// alike too; the tooltip then has all of it. It takes room that is there and makes no window wide.
class ElidedLabel final : public QLabel {
public:
    explicit ElidedLabel(QWidget* parent = nullptr);

    /// @param kept  the last part of the text, which is never cut
    void setText(const QString& text, const QString& kept = {});
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    /// The text as it is to be seen now.
    [[nodiscard]] QString shownText() const;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QString kept_;
};

} // namespace korvana::desktop
