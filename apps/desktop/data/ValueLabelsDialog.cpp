#include "apps/desktop/data/ValueLabelsDialog.h"

#include "apps/desktop/data/GridText.h"
#include "apps/desktop/text/ErrorLine.h"
#include "host/data/DayNumber.h"
#include "host/data/NumberText.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>
#include <map>
#include <set>

namespace korvana::desktop {
namespace {

enum { Value, Text, Cases };

std::optional<double> readValue(const Variable& variable, const QString& text) {
    const std::string entered = text.trimmed().toStdString();
    if (variable.kind == VariableKind::Date) {
        const IsoDate date = readIsoDate(entered);
        if (date.hasForm) return date.dayNumber;
    }
    const NumberText number = readNumber(entered);
    return number.form == NumberForm::Finite ? std::optional(number.value) : std::nullopt;
}

} // namespace

ValueLabelsDialog::ValueLabelsDialog(Variable variable, const VariableSummary* counts, QWidget* parent)
    : QDialog(parent), variable_(std::move(variable)), table_(new QTableWidget(0, 3, this)),
      error_(new ErrorLine(this)) {
    setWindowTitle(tr("Value Labels: %1").arg(shown(variable_.name)));
    table_->setHorizontalHeaderLabels({tr("Value"), tr("Label"), tr("Cases")});
    table_->verticalHeader()->hide();
    table_->horizontalHeader()->setSectionResizeMode(Text, QHeaderView::Stretch);
    table_->setTabKeyNavigation(false);
    table_->setSelectionBehavior(QAbstractItemView::SelectItems);
    table_->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                            QAbstractItemView::AnyKeyPressed | QAbstractItemView::SelectedClicked);
    table_->setAccessibleName(tr("Values and their labels"));

    constexpr std::size_t mostUnlabelled = 100; // more of them are measurements, not codes
    std::map<double, std::pair<QString, QString>> rows;
    for (const ValueLabel& each : variable_.valueLabels)
        rows[each.value].first = QString::fromStdString(each.text);
    if (counts != nullptr && counts->distinct.values.size() <= mostUnlabelled + variable_.valueLabels.size())
        for (const DistinctValue& each : counts->distinct.values)
            rows[each.value].second = countText(each.count);
    for (const auto& [value, texts] : rows)
        addRow(valueText(variable_, value, false), texts.first, texts.second);
    if (rows.empty()) addRow({}, {}, {});
    table_->setCurrentCell(0, rows.empty() ? Value : Text);
    table_->resizeColumnToContents(Value);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    QPushButton* add = buttons->addButton(tr("&Add Value"), QDialogButtonBox::ActionRole);
    QPushButton* remove = buttons->addButton(tr("&Remove"), QDialogButtonBox::ActionRole);
    add->setAutoDefault(false);
    remove->setAutoDefault(false);
    connect(add, &QPushButton::clicked, this, &ValueLabelsDialog::addEmptyRow);
    connect(remove, &QPushButton::clicked, this, &ValueLabelsDialog::removeRows);
    connect(buttons, &QDialogButtonBox::accepted, this, &ValueLabelsDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &ValueLabelsDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(table_, 1);
    layout->addWidget(error_);
    layout->addWidget(buttons);
    resize(fontMetrics().averageCharWidth() * 64, fontMetrics().height() * 20);
    table_->setFocus();
}

int ValueLabelsDialog::addRow(const QString& value, const QString& label, const QString& cases) {
    const int row = table_->rowCount();
    table_->insertRow(row);
    table_->setItem(row, Value, new QTableWidgetItem(value));
    table_->setItem(row, Text, new QTableWidgetItem(label));
    auto* count = new QTableWidgetItem(cases);
    count->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    table_->setItem(row, Cases, count);
    for (const int column : {Value, Cases})
        table_->item(row, column)->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    return row;
}

void ValueLabelsDialog::addEmptyRow() {
    const int row = addRow({}, {}, {});
    table_->setCurrentCell(row, Value);
    table_->setFocus();
    table_->editItem(table_->item(row, Value));
}

void ValueLabelsDialog::removeRows() {
    std::set<int> rows;
    for (const QTableWidgetItem* item : table_->selectedItems())
        rows.insert(item->row());
    for (auto row = rows.rbegin(); row != rows.rend(); ++row)
        table_->removeRow(*row);
    table_->setFocus();
}

void ValueLabelsDialog::fault(int row, const QString& what) {
    error_->tell(tr("Row %1: %2").arg(row + 1).arg(what));
    showAsError(*error_, true);
    table_->setCurrentCell(row, Value);
    table_->setFocus();
}

void ValueLabelsDialog::accept() {
    setFocus(); // ends the editing of a cell
    std::map<double, QString> labels;
    std::set<double> values;
    for (int row = 0; row < table_->rowCount(); ++row) {
        const QString value = table_->item(row, Value)->text().trimmed();
        const QString label = table_->item(row, Text)->text().trimmed();
        if (value.isEmpty() && label.isEmpty()) continue;
        const auto read = readValue(variable_, value);
        if (!read) {
            fault(row, tr("'%1' is not a valid value; enter %2")
                           .arg(value, variable_.kind == VariableKind::Date ? tr("a date as YYYY-MM-DD")
                                                                            : tr("a number")));
            return;
        }
        if (!values.insert(*read).second) {
            fault(row, tr("the value %1 is in a row above already; remove one of the two").arg(value));
            return;
        }
        if (!label.isEmpty()) labels[*read] = label;
    }
    labels_.clear();
    for (const auto& [value, label] : labels)
        labels_.push_back({value, label.toStdString()});
    QDialog::accept();
}

} // namespace korvana::desktop
