#pragma once

#include <QLabel>

namespace korvana::desktop {

/// A text that may be broken anywhere in words too long for a line, as names of variables may be; otherwise
/// they would decide how narrow a window can be. For showing only: see `WrappedLabel`.
[[nodiscard]] QString breakable(const QString& text);

/// A text whose words of more than some sixty letters are cut in their middle.
[[nodiscard]] QString withShortWords(const QString& text);

/// A text in as many lines as it takes. It makes no window wide, however long its words are, and what is
/// copied out of it is the text that was given.
class WrappedLabel final : public QLabel {
public:
    explicit WrappedLabel(QWidget* parent = nullptr);

    void setText(const QString& text);
    [[nodiscard]] QString text() const { return text_; }

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    [[nodiscard]] QString selected() const;

    QString text_;
};

} // namespace korvana::desktop
