#include "apps/desktop/results/ReportView.h"

#include <QApplication>
#include <QClipboard>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "apps/desktop/text/FixedFont.h"
#include "host/results/Utf8.h"

namespace korvana::desktop {

ReportView::ReportView(Source source, const QString& name, QWidget* parent)
    : OutputView(parent), source_(std::move(source)), edit_(new QPlainTextEdit), bar_(new QWidget),
      rest_(new QLabel), showAll_(new QPushButton(tr("Show &all lines"))) {
    edit_->setReadOnly(true);
    // The cursor can still be moved, and text selected, with the keyboard.
    edit_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    edit_->setLineWrapMode(QPlainTextEdit::NoWrap);
    const QFont font = fixedFont();
    edit_->setFont(font);
    edit_->setFrameShape(QFrame::NoFrame);
    edit_->document()->setDocumentMargin(QFontMetrics(font).height() * 0.7);
    edit_->setAccessibleName(name);
    edit_->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(edit_, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& place) { emit menuWanted(edit_->viewport()->mapToGlobal(place)); });

    auto* bar = new QHBoxLayout(bar_);
    bar->setContentsMargins(8, 4, 8, 4);
    rest_->setWordWrap(true);
    bar->addWidget(rest_, 1);
    bar->addWidget(showAll_);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(0);
    column->addWidget(edit_, 1);
    column->addWidget(bar_);
    connect(showAll_, &QPushButton::clicked, this, [this] { showLines(true); });
    showLines(false);
}

void ReportView::showLines(bool all) {
    const std::vector<std::string> lines = source_();
    const std::size_t shown = all ? lines.size() : std::min(lines.size(), linesAtFirst);
    std::string text;
    for (std::size_t i = 0; i < shown; ++i)
        text.append(oneLine(lines[i])).append(i + 1 < shown ? "\n" : "");
    const int place = edit_->verticalScrollBar()->value();
    edit_->setPlainText(QString::fromStdString(text));
    edit_->verticalScrollBar()->setValue(place);
    const bool cut = shown < lines.size();
    bar_->setVisible(cut);
    const QLocale locale;
    rest_->setText(
        tr("The first %1 of %2 lines are shown. Copying takes these; printing and exporting take all.")
            .arg(locale.toString(static_cast<qulonglong>(shown)),
                 locale.toString(static_cast<qulonglong>(lines.size()))));
}

void ReportView::refresh() {
    showLines(bar_->isHidden() && edit_->blockCount() > static_cast<int>(linesAtFirst));
}

void ReportView::copy() {
    const QTextCursor cursor = edit_->textCursor();
    if (cursor.hasSelection()) {
        edit_->copy();
    } else {
        QApplication::clipboard()->setText(edit_->toPlainText());
    }
}

QWidget* ReportView::content() {
    return edit_;
}

QString ReportView::text() const {
    return edit_->toPlainText();
}

} // namespace korvana::desktop
