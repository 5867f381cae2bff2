#include "apps/desktop/text/WrappedLabel.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QRegularExpression>

namespace korvana::desktop {
namespace {

constexpr QChar chance{0x200B}; ///< has no width, and a line may end there

} // namespace

QString breakable(const QString& text, int longest) {
    const QRegularExpression longWord(QStringLiteral("\\S{%1,}").arg(longest + 1));
    static const QRegularExpression letter(QStringLiteral("(\\X)(?=\\S)"));
    QString broken = text;
    qsizetype more = 0;
    for (auto found = longWord.globalMatch(text); found.hasNext();) {
        const auto word = found.next();
        QString pieces = word.captured();
        pieces.replace(letter, QStringLiteral("\\1") + chance);
        broken.replace(word.capturedStart() + more, word.capturedLength(), pieces);
        more += pieces.size() - word.capturedLength();
    }
    return broken;
}

QString unbroken(QString text) {
    return text.remove(chance);
}

QString withShortWords(const QString& text) {
    static const QRegularExpression longWord(QStringLiteral("(\\S{30})\\S{3,}(\\S{30})"));
    return QString(text).replace(longWord, QStringLiteral("\\1…\\2"));
}

WrappedLabel::WrappedLabel(QWidget* parent) : QLabel(parent) {
    setWordWrap(true);
    setTextFormat(Qt::PlainText); // names may look like markup
}

void WrappedLabel::setText(const QString& text) {
    text_ = text;
    QLabel::setText(breakable(text));
    setAccessibleName(text);
}

QString WrappedLabel::selected() const {
    return unbroken(selectedText());
}

void WrappedLabel::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy) && hasSelectedText())
        QGuiApplication::clipboard()->setText(selected());
    else
        QLabel::keyPressEvent(event);
}

void WrappedLabel::mouseReleaseEvent(QMouseEvent* event) {
    QLabel::mouseReleaseEvent(event);
    QClipboard* clipboard = QGuiApplication::clipboard();
    if (hasSelectedText() && clipboard->supportsSelection())
        clipboard->setText(selected(), QClipboard::Selection);
}

void WrappedLabel::contextMenuEvent(QContextMenuEvent* event) {
    if ((textInteractionFlags() & Qt::TextSelectableByMouse) == 0) return QLabel::contextMenuEvent(event);
    QMenu menu(this);
    menu.addAction(tr("&Copy"), this, [this] { QGuiApplication::clipboard()->setText(selected()); })
        ->setEnabled(hasSelectedText());
    menu.addAction(tr("Select &All"), this,
                   [this] { setSelection(0, static_cast<int>(QLabel::text().size())); });
    menu.exec(event->globalPos());
}

} // namespace korvana::desktop
