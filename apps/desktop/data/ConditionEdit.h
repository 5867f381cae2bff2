#pragma once

#include <QPlainTextEdit>
#include <cstddef>
#include <string>

namespace korvana::desktop {

/// A field for an expression in which an error can be marked. Enter and Tab are left to the dialog.
class ConditionEdit : public QPlainTextEdit {
    Q_OBJECT

public:
    explicit ConditionEdit(QWidget* parent = nullptr);

    /// The expression, UTF-8.
    [[nodiscard]] std::string expression() const;

    /// Underlines the word at a byte of expression(); at its end, the last character.
    void mark(std::size_t position);
    void clearMark();
    /// Moves the cursor to the mark.
    void goToMark();
    /// The position of the mark in characters, -1 if there is none.
    [[nodiscard]] int markedAt() const { return marked_; }

    /// Inserts a piece of an expression at the cursor, with blanks around it where needed.
    void insertPiece(const QString& piece);
    /// The text before the cursor (or the selection), without trailing blanks.
    [[nodiscard]] QString before() const;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void drawMark();

    int marked_ = -1;
};

} // namespace korvana::desktop
