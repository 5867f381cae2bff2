#include "apps/desktop/data/VariablesView.h"

#include "apps/desktop/data/GridText.h"
#include "apps/desktop/data/ValueLabelsDialog.h"
#include "apps/desktop/data/VariableTableModel.h"
#include "apps/desktop/text/WrappedLabel.h"

#include <QAction>
#include <QEvent>
#include <QHeaderView>
#include <QTableView>
#include <QVBoxLayout>
#include <algorithm>
#include <exception>

namespace korvana::desktop {

VariablesView::VariablesView(QWidget* parent)
    : QWidget(parent), model_(new VariableTableModel(this)), table_(new QTableView(this)),
      message_(new WrappedLabel(this)) {
    table_->setModel(model_);
    table_->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    table_->setWordWrap(false);
    table_->setTabKeyNavigation(false); // Tab leaves the table
    table_->setAccessibleName(tr("Variables"));
    table_->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                            QAbstractItemView::AnyKeyPressed);
    table_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table_->horizontalHeader()->setResizeContentsPrecision(200);
    table_->setContextMenuPolicy(Qt::ActionsContextMenu);
    message_->hide();

    auto* labels = new QAction(tr("&Value Labels..."), this);
    labels->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_L));
    labels->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    table_->addAction(labels);
    auto* remove = new QAction(tr("&Remove Computed Variable"), this);
    remove->setObjectName(QStringLiteral("remove"));
    remove->setShortcut(QKeySequence::Delete);
    remove->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    table_->addAction(remove);
    connect(remove, &QAction::triggered, this, [this] { removeVariable(table_->currentIndex().row()); });
    connect(labels, &QAction::triggered, this, [this] { editValueLabels(table_->currentIndex().row()); });
    connect(table_, &QTableView::activated, this, [this](const QModelIndex& index) { // Enter or double-click
        if (index.column() == VariableTableModel::ValueLabels) editValueLabels(index.row());
    });
    connect(model_, &VariableTableModel::refused, this, &VariablesView::say);
    connect(model_, &VariableTableModel::described, this, [this] {
        say({});
        emit labelsEdited();
        emit variablesChanged();
    });
    connect(&model_->counts(), &VariableCounts::counted, this, [this](int variable0) {
        if (variable0 + 1 == model_->rowCount()) fitColumns();
    });

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(table_, 1);
    layout->addWidget(message_);
    setFocusProxy(table_);
    fitRows();
}

void VariablesView::setData(ActiveData* active) {
    const bool another =
        active == nullptr || active != model_->active() || active->generation() != generation_;
    const int row = table_->currentIndex().row(); // a new table has no current row
    const int rows = table_->verticalHeader()->count();
    model_->show(active);
    if (!another && rows != model_->rowCount()) { // a variable was added or removed
        fitColumns();
        table_->setCurrentIndex(
            model_->index(std::min(row, model_->rowCount() - 1), VariableTableModel::Label));
    }
    generation_ = active != nullptr ? active->generation() : 0;
    if (!another) return;
    say({});
    fitColumns();
    if (model_->rowCount() > 0) table_->setCurrentIndex(model_->index(0, VariableTableModel::Label));
}

void VariablesView::setEditable(bool editable) {
    model_->setEditable(editable);
}

void VariablesView::editValueLabels(int variable0) {
    if (variable0 < 0 || variable0 >= model_->rowCount()) return;
    const Variable& variable = model_->active()->dataSet().variable(variable0);
    if (!model_->editable()) {
        say(tr("Value labels cannot be edited while an analysis runs."));
        return;
    }
    if (variable.kind == VariableKind::Text) {
        say(tr("The labels of %1 are the texts of the file; they cannot be edited.")
                .arg(shown(variable.name)));
        return;
    }
    ValueLabelsDialog dialog(variable, model_->counts().of(variable0), this);
    if (dialog.exec() == QDialog::Accepted)
        model_->describe(variable0, variable.label, variable.missingCode, dialog.valueLabels());
}

void VariablesView::removeVariable(int variable0) {
    if (variable0 < 0 || variable0 >= model_->rowCount()) return;
    if (!model_->editable()) {
        say(tr("Variables cannot be removed while an analysis runs."));
        return;
    }
    try {
        model_->active()->undefine(variable0);
    } catch (const std::exception& error) {
        say(shown(error.what()));
        return;
    }
    say({});
    emit variablesChanged();
}

void VariablesView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    model_->counts().setRunning(true);
}

void VariablesView::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    model_->counts().setRunning(false);
}

void VariablesView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        fitRows();
        fitColumns();
    }
    if (event->type() == QEvent::PaletteChange) showAsError(*message_, true);
}

void VariablesView::fitRows() {
    table_->verticalHeader()->setDefaultSectionSize(table_->fontMetrics().height() * 3 / 2);
}

void VariablesView::fitColumns() {
    table_->resizeColumnsToContents();
    const int wide = table_->fontMetrics().averageCharWidth() * 40;
    const int gap = table_->fontMetrics().averageCharWidth();
    const int label = table_->fontMetrics().averageCharWidth() * 16; // room to write one
    for (int column = 0; column < model_->columnCount(); ++column) {
        const bool written = column == VariableTableModel::Label || column == VariableTableModel::ValueLabels;
        table_->setColumnWidth(column,
                               std::clamp(table_->columnWidth(column) + gap, written ? label : 0, wide));
    }
}

void VariablesView::say(const QString& text) {
    message_->setText(text);
    message_->setVisible(!text.isEmpty());
    showAsError(*message_, true);
}

} // namespace korvana::desktop
