#pragma once

#include <QPlainTextEdit>
#include <cstddef>
#include <string>

namespace korvana::desktop {

/// A field for an expression in which a fault can be marked. Enter and Tab are left to the dialog.
class ConditionEdit : public QPlainTextEdit {
    Q_OBJECT

public:
    explicit ConditionEdit(QWidget* parent = nullptr);

    /// The expression, UTF-8.
    [[nodiscard]] std::string expression() const;

    /// Underlines what stands at a byte of expression() and, at its end, the last character.
    void mark(std::size_t position);
    void clearMark();
    /// Puts the cursor where the mark is.
    void goToMark();
    /// The marked place in characters, -1 without a mark.
    [[nodiscard]] int markedAt() const { return marked_; }

    /// Puts a piece of an expression at the cursor, kept apart by blanks.
    void insertPiece(const QString& piece);
    /// What stands before the cursor (or the selection), without blanks at its end.
    [[nodiscard]] QString before() const;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void drawMark();

    int marked_ = -1;
};

} // namespace korvana::desktop
