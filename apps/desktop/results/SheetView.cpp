#include "apps/desktop/results/SheetView.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QEvent>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QScrollArea>
#include <QTableView>
#include <QVBoxLayout>
#include <algorithm>
#include <new>

#include "apps/desktop/EllipsisHeader.h"
#include "apps/desktop/WaitCursor.h"
#include "apps/desktop/text/WrappedLabel.h"
#include "host/results/Utf8.h"

namespace korvana::desktop {
namespace {

/// A sample of some hundred rows, from first to last, gives the width of a column.
constexpr int sampledRows = 300;
constexpr int widestEms = 40;

} // namespace

SheetView::SheetView(const Spreadsheet& sheet, QWidget* parent)
    : OutputView(parent), sheet_(sheet), model_(new SheetModel(sheet, this)), table_(new QTableView),
      title_(new WrappedLabel), notes_(new WrappedLabel), footnotes_(new WrappedLabel),
      below_(new QScrollArea), copyWithHeadings_(new QAction(tr("Copy with &Headings"), this)),
      copyAsShown_(new QAction(tr("Copy as &Shown"), this)),
      selectAll_(new QAction(tr("Select A&ll"), this)) {
    for (WrappedLabel* label : {title_, notes_, footnotes_}) {
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
        label->setContentsMargins(8, 0, 8, 0);
    }
    QFont bold = title_->font();
    bold.setBold(true);
    title_->setFont(bold);

    table_->setHorizontalHeader(new EllipsisHeader(Qt::Horizontal, table_));
    table_->setVerticalHeader(new EllipsisHeader(Qt::Vertical, table_));
    table_->setModel(model_);
    table_->setFrameShape(QFrame::NoFrame);
    table_->setAlternatingRowColors(true);
    table_->setWordWrap(false);
    table_->setTabKeyNavigation(false); // Tab leaves the table; arrows move within it
    table_->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    table_->setCornerButtonEnabled(true);
    table_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table_->horizontalHeader()->setHighlightSections(false);
    table_->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(table_, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& place) { emit menuWanted(table_->viewport()->mapToGlobal(place)); });

    copyWithHeadings_->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_C));
    copyWithHeadings_->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    connect(copyWithHeadings_, &QAction::triggered, this, [this] { copyCells({CopyValues::Full, true}); });
    connect(copyAsShown_, &QAction::triggered, this, [this] { copyCells({CopyValues::AsShown, true}); });
    connect(selectAll_, &QAction::triggered, table_, &QTableView::selectAll);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 8, 0, 0);
    column->addWidget(title_);
    column->addWidget(notes_);
    column->addWidget(table_, 1);
    below_->setWidget(footnotes_);
    below_->setWidgetResizable(true);
    below_->setFrameShape(QFrame::NoFrame);
    below_->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    constexpr int mostLines = 7;
    below_->setMaximumHeight(mostLines * QFontMetrics(footnotes_->font()).lineSpacing());
    for (QWidget* each : {static_cast<QWidget*>(footnotes_), below_->viewport()})
        each->setAutoFillBackground(false);
    column->addWidget(below_);
    showTexts();
    fitColumns();
}

void SheetView::showTexts() {
    title_->setText(QString::fromStdString(shownLine(sheet_.title)));
    title_->setVisible(!title_->text().isEmpty());
    table_->setAccessibleName(title_->text().isEmpty() ? tr("Table") : title_->text());
    QStringList lines;
    for (const std::string& note : sheet_.notes)
        lines += QString::fromStdString(oneLine(note));
    if (model_->isCut()) {
        lines += tr("The first %1 of %2 rows; exporting the table writes all of them.")
                     .arg(QLocale().toString(model_->rowCount()),
                          QLocale().toString(static_cast<qulonglong>(sheet_.rowCount())));
    }
    notes_->setText(lines.join('\n'));
    notes_->setVisible(!lines.isEmpty());
    lines.clear();
    for (const std::string& note : sheet_.footnotes)
        lines += QString::fromStdString(oneLine(note));
    footnotes_->setText(lines.join('\n'));
    below_->setVisible(!lines.isEmpty());
}

void SheetView::fitColumns() {
    const QFontMetrics metrics(table_->font());
    const int em = metrics.horizontalAdvance('m');
    table_->verticalHeader()->setDefaultSectionSize(metrics.height() + metrics.height() / 3);
    const int rows = model_->rowCount();
    const int step = std::max(1, rows / sampledRows);
    const int margin = em + 2 * style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, table_);
    for (int column = 0; column < model_->columnCount(); ++column) {
        int width = table_->horizontalHeader()->sectionSizeHint(column);
        const auto include = [&](int row) {
            const QString text = model_->data(model_->index(row, column), Qt::DisplayRole).toString();
            width = std::max(width, metrics.horizontalAdvance(text) + margin);
        };
        for (int row = 0; row < rows; row += step)
            include(row);
        if (rows > 0) include(rows - 1);
        table_->setColumnWidth(column, std::clamp(width, 4 * em, widestEms * em));
    }
    // Qt measures the headings of the first rows only; the longest may be anywhere.
    qsizetype longest = QString::number(rows).size();
    const std::string* widest = nullptr;
    for (const std::string& heading : sheet_.rowHeadings)
        if (widest == nullptr || heading.size() > widest->size()) widest = &heading;
    const QString text = widest == nullptr ? QString(longest, '0') : QString::fromStdString(oneLine(*widest));
    table_->verticalHeader()->setFixedWidth(
        std::min(metrics.horizontalAdvance(text) + 2 * margin, widestEms * em));
}

void SheetView::refresh() {
    model_->reload();
    showTexts();
    fitColumns();
}

void SheetView::copy() {
    const QItemSelectionModel* selection = table_->selectionModel();
    bool columns = selection->hasSelection() && model_->rowCount() > 1;
    for (const QItemSelectionRange& range : selection->selection())
        columns = columns && range.top() == 0 && range.bottom() == model_->rowCount() - 1;
    copyCells({CopyValues::Full, columns || !selection->hasSelection()});
}

void SheetView::copyCells(const CopyOptions& options) {
    QItemSelection selection = table_->selectionModel()->selection();
    if (selection.isEmpty() && model_->rowCount() > 0 && model_->columnCount() > 0) {
        selection.select(model_->index(0, 0),
                         model_->index(model_->rowCount() - 1, model_->columnCount() - 1));
    }
    const WaitCursor cursor;
    try {
        if (auto cells = copiedCells(sheet_, selection, options)) {
            QApplication::clipboard()->setMimeData(cells.release());
            emit statusText(tr("The cells were copied."));
        }
    } catch (const std::bad_alloc&) {
        emit statusText(tr("There is not enough memory to copy so many cells; select fewer, or export the "
                           "table to a CSV file."));
    }
}

QWidget* SheetView::content() {
    return table_;
}

QList<QAction*> SheetView::viewActions() {
    return {copyWithHeadings_, copyAsShown_, selectAll_};
}

void SheetView::changeEvent(QEvent* event) {
    OutputView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) fitColumns();
}

} // namespace korvana::desktop
