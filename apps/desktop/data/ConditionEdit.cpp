#include "apps/desktop/data/ConditionEdit.h"

#include "apps/desktop/data/GridText.h"

#include <QEvent>
#include <QKeyEvent>
#include <QTextEdit>
#include <algorithm>

namespace korvana::desktop {

ConditionEdit::ConditionEdit(QWidget* parent) : QPlainTextEdit(parent) {
    setTabChangesFocus(true);
    // Room for three lines, whatever the font.
    const QMargins margins = contentsMargins();
    setMinimumHeight(fontMetrics().lineSpacing() * 3 + margins.top() + margins.bottom() +
                     static_cast<int>(2 * document()->documentMargin()));
    setMaximumHeight(minimumHeight());
}

std::string ConditionEdit::expression() const {
    return toPlainText().toStdString();
}

void ConditionEdit::mark(std::size_t position) {
    const std::string text = expression();
    const auto bytes = static_cast<qsizetype>(std::min(position, text.size()));
    marked_ = static_cast<int>(QString::fromUtf8(text.data(), bytes).size());
    drawMark();
}

void ConditionEdit::clearMark() {
    marked_ = -1;
    drawMark();
}

void ConditionEdit::goToMark() {
    if (marked_ < 0) return;
    QTextCursor cursor = textCursor();
    cursor.setPosition(marked_);
    setTextCursor(cursor);
}

void ConditionEdit::drawMark() {
    QList<QTextEdit::ExtraSelection> marks;
    const QString text = toPlainText();
    if (marked_ >= 0 && !text.isEmpty()) {
        const auto isWord = [&](int i) {
            return text.at(i).isLetterOrNumber() || text.at(i) == QLatin1Char('_');
        };
        const int size = static_cast<int>(text.size());
        int first = std::min(marked_, size);
        int last = first;
        while (last < size && isWord(last))
            ++last;
        if (last == first && last < size) ++last;
        if (first == size) // something is missing at the end: mark the last character
            do
                --first;
            while (first > 0 && text.at(first).isSpace());
        QTextEdit::ExtraSelection fault;
        fault.cursor = textCursor();
        fault.cursor.setPosition(first);
        fault.cursor.setPosition(std::max(last, first + 1), QTextCursor::KeepAnchor);
        const QColor colour = errorText(palette());
        fault.format.setUnderlineStyle(QTextCharFormat::WaveUnderline);
        fault.format.setUnderlineColor(colour);
        QColor behind = colour;
        behind.setAlphaF(0.22F);
        fault.format.setBackground(behind);
        marks.append(fault);
    }
    setExtraSelections(marks);
}

QString ConditionEdit::before() const {
    QString text = toPlainText().left(textCursor().selectionStart());
    while (!text.isEmpty() && text.back().isSpace())
        text.chop(1);
    return text;
}

void ConditionEdit::insertPiece(const QString& piece) {
    QTextCursor cursor = textCursor();
    const QString text = toPlainText();
    const int from = cursor.selectionStart();
    const int to = cursor.selectionEnd();
    const bool apart = from > 0 && !text.at(from - 1).isSpace() && text.at(from - 1) != QLatin1Char('(');
    const bool followed = to < text.size() && !text.at(to).isSpace() && text.at(to) != QLatin1Char(')');
    cursor.insertText((apart ? QStringLiteral(" ") : QString()) + piece +
                      (followed ? QStringLiteral(" ") : QString()));
    setTextCursor(cursor);
}

void ConditionEdit::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter && (event->modifiers() & Qt::ShiftModifier) == 0)
        event->ignore();
    else
        QPlainTextEdit::keyPressEvent(event);
}

void ConditionEdit::changeEvent(QEvent* event) {
    QPlainTextEdit::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) drawMark();
}

} // namespace korvana::desktop
