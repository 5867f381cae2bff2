#include "apps/desktop/data/VariableTableModel.h"

#include "apps/desktop/data/GridText.h"
#include "host/data/Codes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <exception>
#include <limits>

namespace korvana::desktop {
namespace {

/// The first labels of a variable in one line: "0 = alive, 1 = dead".
QString labelsText(const Variable& variable) {
    constexpr std::size_t most = 12;
    QString text;
    std::size_t taken = 0;
    for (const ValueLabel& each : variable.valueLabels) {
        if (!text.isEmpty()) text += QStringLiteral(", ");
        if (taken++ == most) return text + QStringLiteral("\u2026");
        text += valueText(variable, each.value, false) + QStringLiteral(" = ") + shown(each.text);
    }
    return text;
}

QString distinctText(const DistinctValues& distinct) {
    return distinct.moreThanLimit ? QStringLiteral("> ") + countText(VariableCounts::distinctLimit)
                                  : countText(static_cast<qint64>(distinct.values.size()));
}

QString rangeText(const Variable& variable, const VariableSummary& summary) {
    if (summary.validCount == 0 || variable.kind == VariableKind::Text) return {};
    return VariableTableModel::tr("%1 to %2")
        .arg(valueText(variable, summary.min, false), valueText(variable, summary.max, false));
}

} // namespace

VariableTableModel::VariableTableModel(QObject* parent) : QAbstractTableModel(parent) {
    connect(&counts_, &VariableCounts::counted, this,
            [this](int variable0) { emit dataChanged(index(variable0, Cases), index(variable0, Range)); });
}

void VariableTableModel::show(ActiveData* data) {
    const int variables = data != nullptr ? data->dataSet().variableCount() : 0;
    if (data != nullptr && data == data_ && current() && variables == variables_) {
        counts_.start(data);
        if (rowCount() > 0) emit dataChanged(index(0, 0), index(rowCount() - 1, columns - 1));
        return;
    }
    beginResetModel();
    variables_ = variables;
    data_ = data;
    generation_ = data != nullptr ? data->generation() : 0;
    counts_.start(data);
    endResetModel();
}

int VariableTableModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() || !current() ? 0 : data_->dataSet().variableCount();
}

int VariableTableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : columns;
}

QString VariableTableModel::text(int variable0, int column) const {
    const Variable& variable = data_->dataSet().variable(variable0);
    switch (column) {
    case Name:
        return shown(variable.name);
    case Label:
        return shown(variable.label);
    case Kind:
        return QLatin1String(kindName(variable.kind));
    case MissingCode:
        return valueText(variable, variable.missingCode, variable.kind == VariableKind::Text);
    case ValueLabels:
        return labelsText(variable);
    default:
        break;
    }
    const VariableSummary* const summary = counts_.of(variable0);
    if (summary == nullptr) return QStringLiteral("\u2026");
    switch (column) {
    case Cases:
        return countText(summary->validCount);
    case Missing:
        return countText(summary->missingCount);
    case Distinct:
        return distinctText(summary->distinct);
    default:
        return rangeText(variable, *summary);
    }
}

QVariant VariableTableModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount() || index.column() >= columns) return {};
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return text(index.row(), index.column());
    case Qt::TextAlignmentRole: {
        const bool number = index.column() >= Cases;
        return QVariant::fromValue(
            Qt::Alignment((number ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter));
    }
    case Qt::ToolTipRole:
        if (index.column() == Name && data_->weightVariable() == index.row() + 1)
            return tr("weights the cases");
        if (index.column() == Label || index.column() == ValueLabels || index.column() == Name)
            return text(index.row(), index.column());
        return {};
    default:
        return {};
    }
}

Qt::ItemFlags VariableTableModel::flags(const QModelIndex& index) const {
    const bool edits = editable_ && (index.column() == Label || index.column() == MissingCode);
    return QAbstractTableModel::flags(index) | (edits ? Qt::ItemIsEditable : Qt::NoItemFlags);
}

bool VariableTableModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::EditRole || !editable_ || !index.isValid() || index.row() >= rowCount()) return false;
    const QString entered = value.toString().trimmed();
    if (entered == text(index.row(), index.column())) return true;
    if (index.column() == MissingCode) return setMissingCode(index.row(), entered);
    if (index.column() != Label) return false;
    const Variable& variable = data_->dataSet().variable(index.row());
    return describe(index.row(), entered.toStdString(), variable.missingCode, variable.valueLabels);
}

bool VariableTableModel::setMissingCode(int variable0, const QString& text) {
    const Variable& variable = data_->dataSet().variable(variable0);
    double code = std::numeric_limits<double>::quiet_NaN();
    if (!text.isEmpty()) {
        const auto value = resolveCode(data_->dataSet(), variable0, text.toStdString());
        if (!value) {
            emit refused(
                tr("%1: '%2' is not a value of this variable; enter %3, or nothing for no missing code.")
                    .arg(shown(variable.name), text,
                         variable.kind == VariableKind::Text   ? tr("one of its texts")
                         : variable.kind == VariableKind::Date ? tr("a date as YYYY-MM-DD")
                                                               : tr("a number")));
            return false;
        }
        code = *value;
    }
    return describe(variable0, variable.label, code, variable.valueLabels);
}

bool VariableTableModel::describe(int variable0, const std::string& label, double missingCode,
                                  const std::vector<ValueLabel>& valueLabels) {
    const Variable& before = data_->dataSet().variable(variable0);
    const bool sameCode =
        missingCode == before.missingCode || (std::isnan(missingCode) && std::isnan(before.missingCode));
    const bool sameLabels = std::equal(
        valueLabels.begin(), valueLabels.end(), before.valueLabels.begin(), before.valueLabels.end(),
        [](const ValueLabel& a, const ValueLabel& b) { return a.value == b.value && a.text == b.text; });
    if (label == before.label && sameCode && sameLabels) return true; // nothing was changed
    try {
        data_->describe(variable0, label, missingCode, valueLabels);
    } catch (const std::exception& error) {
        emit refused(tr("%1 was not changed, because the selection of cases would no longer be valid: %2")
                         .arg(shown(data_->dataSet().variable(variable0).name), shown(error.what())));
        return false;
    }
    // Repeating the selection changes the counts of every variable.
    if (data_->condition().empty())
        counts_.again(variable0);
    else
        counts_.start(data_);
    emit dataChanged(index(0, 0), index(rowCount() - 1, columns - 1));
    emit described(variable0);
    return true;
}

QVariant VariableTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Vertical) return role == Qt::DisplayRole ? QVariant(section + 1) : QVariant();
    static const std::array<const char*, columns> titles{
        QT_TR_NOOP("Name"),         QT_TR_NOOP("Label"),        QT_TR_NOOP("Kind"),
        QT_TR_NOOP("Missing code"), QT_TR_NOOP("Value labels"), QT_TR_NOOP("Cases"),
        QT_TR_NOOP("Missing"),      QT_TR_NOOP("Distinct"),     QT_TR_NOOP("Range")};
    if (section < 0 || section >= columns) return {};
    if (role == Qt::DisplayRole) return tr(titles.at(static_cast<std::size_t>(section)));
    if (role == Qt::TextAlignmentRole) {
        const bool number = section >= Cases;
        return QVariant::fromValue(
            Qt::Alignment((number ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter));
    }
    return {};
}

} // namespace korvana::desktop
