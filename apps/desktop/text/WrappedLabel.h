#pragma once

#include <QLabel>

namespace korvana::desktop {

/// The text with places to break added to its very long words (names of variables can be such); otherwise
/// they would set how narrow a window can be. For display only: see `WrappedLabel`.
[[nodiscard]] /// @param longest  characters of a word that is left whole
QString
breakable(const QString& text, int longest = 20);
/// The text without these places.
QString unbroken(QString text);

/// The text with words of more than some sixty characters shortened in the middle.
[[nodiscard]] QString withShortWords(const QString& text);

/// A text in as many lines as it needs. It never widens a window, however long its words are, and text copied
/// from it is the text that was given.
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
