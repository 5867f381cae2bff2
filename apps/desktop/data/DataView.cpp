#include "apps/desktop/data/DataView.h"

#include "apps/desktop/EllipsisHeader.h"
#include "apps/desktop/data/CaseTableModel.h"
#include "apps/desktop/data/GridCopy.h"
#include "apps/desktop/data/GridText.h"
#include "apps/desktop/text/WrappedLabel.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QVBoxLayout>
#include <algorithm>

namespace korvana::desktop {
namespace {

/// Missing cells and cases that are left out are shown fainter, in colours of the current palette.
class CellDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        const bool missing = index.data(CaseTableModel::MissingRole).toBool();
        if (missing) option->font.setItalic(true);
        if (missing || index.data(CaseTableModel::LeftOutRole).toBool())
            option->palette.setColor(QPalette::Text, quietText(option->palette));
    }
};

} // namespace

DataView::DataView(QWidget* parent)
    : QWidget(parent), model_(new CaseTableModel(this)), table_(new QTableView(this)),
      nothing_(new QLabel(this)), state_(new WrappedLabel(this)),
      caseLabel_(new QLabel(tr("&Go to case"), this)), case_(new QSpinBox(this)) {
    table_->setHorizontalHeader(new EllipsisHeader(Qt::Horizontal, table_));
    table_->setModel(model_);
    noSelection_ = new QItemSelectionModel(model_, this);
    table_->setItemDelegate(new CellDelegate(table_));
    table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table_->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    table_->setWordWrap(false);
    table_->setTabKeyNavigation(false); // Tab leaves the table
    table_->setAccessibleName(tr("Cases"));
    table_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table_->horizontalHeader()->setResizeContentsPrecision(100);
    table_->setContextMenuPolicy(Qt::ActionsContextMenu);

    auto* copyCells = new QAction(tr("&Copy"), this);
    copyCells->setShortcut(QKeySequence::Copy);
    auto* copyNamed = new QAction(tr("Copy with &Names"), this);
    copyNamed->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_C));
    auto* ask = new QAction(tr("&Go to Case"), this);
    for (QAction* action : {copyCells, copyNamed, ask}) {
        action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        table_->addAction(action);
    }
    connect(copyCells, &QAction::triggered, this, [this] { copy(false); });
    connect(copyNamed, &QAction::triggered, this, [this] { copy(true); });
    connect(ask, &QAction::triggered, this, &DataView::askForCase);

    nothing_->setText(tr("No data. Open a data file, or drop one here."));
    nothing_->setAlignment(Qt::AlignCenter);
    nothing_->setWordWrap(true);
    state_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    caseLabel_->setBuddy(case_);
    case_->setKeyboardTracking(false);
    case_->setAccelerated(true);
    case_->setGroupSeparatorShown(true);
    connect(case_, &QSpinBox::valueChanged, this, &DataView::goToCase);
    connect(table_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex& current) {
                if (!current.isValid()) return;
                const QSignalBlocker quiet(case_);
                case_->setValue(model_->firstCase() + current.row() + 1);
            });

    auto* below = new QHBoxLayout;
    below->setContentsMargins(fontMetrics().averageCharWidth(), 0, 0, 0);
    below->addWidget(state_, 1);
    below->addWidget(caseLabel_);
    below->addWidget(case_);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(nothing_, 1);
    layout->addWidget(table_, 1);
    layout->addLayout(below);
    setFocusProxy(table_);
    fitRows();
    showState();
}

void DataView::setData(const ActiveData* active) {
    const bool another =
        active == nullptr || active != model_->active() || active->generation() != generation_;
    const int row = table_->currentIndex().row(); // a new table has no current row
    const int column = table_->currentIndex().column();
    const int columns = table_->horizontalHeader()->count();
    model_->show(active);
    const bool reshaped = !another && columns != model_->columnCount(); // a variable was added or removed
    generation_ = active != nullptr ? active->generation() : 0;
    // To show which columns are selected, the header queries its selection at each repaint, which visits all
    // rows. With many rows it gets a selection of its own, which stays empty.
    constexpr int mostHighlighted = 200'000;
    table_->horizontalHeader()->setSelectionModel(
        model_->rowCount() > mostHighlighted ? noSelection_ : table_->selectionModel());
    if (another || reshaped) fitColumns();
    showState();
    if (reshaped) table_->setCurrentIndex(model_->index(row, std::min(column, model_->columnCount() - 1)));
    if (another && model_->rowCount() > 0) table_->setCurrentIndex(model_->index(0, 0));
}

void DataView::setShowLabels(bool labels) {
    if (labels == showLabels()) return;
    model_->setShowLabels(labels);
    fitColumns();
}

bool DataView::showLabels() const {
    return model_->showLabels();
}

void DataView::goToCase(int case1) {
    const ActiveData* const active = model_->active();
    if (active == nullptr || model_->rowCount() == 0 || model_->columnCount() == 0) return;
    const int case0 = std::clamp(case1, 1, active->dataSet().caseCount()) - 1;
    const int column = std::max(table_->currentIndex().column(), 0);
    model_->bringCase(case0);
    const QModelIndex index = model_->index(case0 - model_->firstCase(), column);
    table_->setCurrentIndex(index);
    table_->scrollTo(index, QAbstractItemView::PositionAtCenter);
    showState();
}

void DataView::showLastVariable() {
    if (model_->rowCount() == 0 || model_->columnCount() == 0) return;
    // The scroll bar includes a new column only after the next events.
    QMetaObject::invokeMethod(table_, "updateGeometries", Qt::DirectConnection);
    const int row = std::max(table_->currentIndex().row(), 0);
    table_->setCurrentIndex(model_->index(row, model_->columnCount() - 1));
}

void DataView::askForCase() {
    case_->setFocus(Qt::ShortcutFocusReason);
    case_->selectAll();
}

void DataView::copy(bool names) {
    const GridCopy copied = copyCells(*model_, table_->selectionModel()->selection(), names);
    if (copied.text.isEmpty()) {
        say(copied.error);
        return;
    }
    QApplication::clipboard()->setText(copied.text);
    say(tr("Copied: %1 rows, %2 columns.").arg(countText(copied.rows), countText(copied.columns)));
}

void DataView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        fitRows();
        fitColumns();
    }
}

void DataView::fitRows() {
    table_->verticalHeader()->setDefaultSectionSize(table_->fontMetrics().height() * 4 / 3);
}

void DataView::fitColumns() {
    // The contents of thousands of columns are not measured: width for the heading and a number will do.
    constexpr int mostMeasured = 500;
    const int wide = table_->fontMetrics().averageCharWidth() * 32;
    const int narrow = table_->fontMetrics().averageCharWidth() * 8;
    table_->horizontalHeader()->setDefaultSectionSize(narrow * 2);
    for (int column = 0; column < std::min(model_->columnCount(), mostMeasured); ++column) {
        table_->resizeColumnToContents(column);
        table_->setColumnWidth(column, std::clamp(table_->columnWidth(column), narrow, wide));
    }
}

void DataView::say(const QString& text) {
    state_->setText(text);
}

void DataView::showState() {
    const ActiveData* const active = model_->active();
    const int cases = active != nullptr ? active->dataSet().caseCount() : 0;
    const bool any = active != nullptr && active->dataSet().variableCount() > 0;
    nothing_->setVisible(!any);
    table_->setVisible(any);
    caseLabel_->setVisible(any);
    case_->setVisible(any);
    const QSignalBlocker quiet(case_);
    case_->setRange(any ? 1 : 0, cases);
    if (!any) {
        say({});
        return;
    }
    const int variables = active->dataSet().variableCount();
    QString text = casesText(cases) + QStringLiteral(", ") + countText(variables) +
                   (variables == 1 ? tr(" variable") : tr(" variables"));
    if (!active->condition().empty())
        text += tr("; %1 selected: %2").arg(countText(active->selectedCount()), shown(active->condition()));
    if (active->weightVariable() > 0)
        text +=
            tr("; weighted by %1").arg(shown(active->dataSet().variable(active->weightVariable() - 1).name));
    if (cases > CaseTableModel::mostRows)
        text += tr("; the table shows the cases %1 to %2, \"Go to case\" leads to the others")
                    .arg(countText(model_->firstCase() + 1),
                         countText(qint64{model_->firstCase()} + model_->rowCount()));
    say(text);
}

} // namespace korvana::desktop
