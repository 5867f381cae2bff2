#include "apps/desktop/data/CaseTableModel.h"

#include "apps/desktop/data/GridText.h"

#include <QFont>
#include <algorithm>
#include <cmath>

namespace korvana::desktop {

void CaseTableModel::show(const ActiveData* data) {
    const int variables = data != nullptr ? data->dataSet().variableCount() : 0;
    if (data != nullptr && data == data_ && current() &&
        variables == variables_) { // the same cases: the view keeps its place
        if (rowCount() == 0 || columnCount() == 0) return;
        emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
        emit headerDataChanged(Qt::Horizontal, 0, columnCount() - 1);
        emit headerDataChanged(Qt::Vertical, 0, rowCount() - 1);
        return;
    }
    beginResetModel();
    variables_ = variables;
    data_ = data;
    generation_ = data != nullptr ? data->generation() : 0;
    first_ = 0;
    endResetModel();
}

void CaseTableModel::setShowLabels(bool labels) {
    if (labels_ == labels) return;
    labels_ = labels;
    if (rowCount() > 0 && columnCount() > 0)
        emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}

void CaseTableModel::bringCase(int case0) {
    if (!current() || (case0 >= first_ && case0 < first_ + rowCount())) return;
    beginResetModel();
    first_ = case0 / mostRows * mostRows;
    endResetModel();
}

int CaseTableModel::nameColumns() const {
    return current() && data_->dataSet().hasCaseNames() ? 1 : 0;
}

int CaseTableModel::rowCount(const QModelIndex& parent) const {
    if (parent.isValid() || !current()) return 0;
    return std::min(data_->dataSet().caseCount() - first_, mostRows);
}

int CaseTableModel::columnCount(const QModelIndex& parent) const {
    if (parent.isValid() || !current()) return 0;
    return data_->dataSet().variableCount() + nameColumns();
}

bool CaseTableModel::leftOut(int case0) const {
    const auto mask = data_->mask();
    return !mask.empty() && mask[static_cast<std::size_t>(case0)] == 0;
}

QString CaseTableModel::cellText(int row, int column) const {
    const DataSet& data = data_->dataSet();
    const int case0 = first_ + row;
    const int variable0 = column - nameColumns();
    if (variable0 < 0) return shown(data.caseName(case0));
    return valueText(data.variable(variable0), data.column(variable0)[static_cast<std::size_t>(case0)],
                     labels_);
}

Qt::Alignment CaseTableModel::alignment(const Variable& variable) const {
    const bool words = labels_ && !variable.valueLabels.empty();
    return (words ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter;
}

QString CaseTableModel::missingText(int variable0, double value) const {
    const Variable& variable = data_->dataSet().variable(variable0);
    if (std::isnan(value)) return tr("missing");
    return tr("missing: %1 is the missing code of %2")
        .arg(valueText(variable, value, false), shown(variable.name));
}

QVariant CaseTableModel::data(const QModelIndex& index, int role) const {
    if (!current() || !index.isValid() || index.row() >= rowCount() || index.column() >= columnCount())
        return {};
    const DataSet& data = data_->dataSet();
    const int case0 = first_ + index.row();
    if (role == LeftOutRole) return leftOut(case0);
    const int variable0 = index.column() - nameColumns();
    if (variable0 < 0) return role == Qt::DisplayRole ? QVariant(cellText(index.row(), 0)) : QVariant();
    const Variable& variable = data.variable(variable0);
    const double value = data.column(variable0)[static_cast<std::size_t>(case0)];
    switch (role) {
    case Qt::DisplayRole:
        return std::isnan(value) ? QStringLiteral(".") : valueText(variable, value, labels_);
    case Qt::TextAlignmentRole: {
        return QVariant::fromValue(alignment(variable));
    }
    case MissingRole:
        return variable.isMissing(value);
    case Qt::ToolTipRole: {
        if (variable.isMissing(value)) return missingText(variable0, value);
        const QString code = valueText(variable, value, false);
        const QString label = valueText(variable, value, true);
        return code == label ? QVariant() : QVariant(code + QStringLiteral(" = ") + label);
    }
    case Qt::AccessibleTextRole:
        return variable.isMissing(value) ? missingText(variable0, value)
                                         : valueText(variable, value, labels_);
    default:
        return {};
    }
}

QVariant CaseTableModel::columnHeader(int column, int role) const {
    const int variable0 = column - nameColumns();
    if (variable0 < 0) {
        if (role == Qt::TextAlignmentRole)
            return QVariant::fromValue(Qt::Alignment(Qt::AlignLeft | Qt::AlignVCenter));
        return role == Qt::DisplayRole ? QVariant(tr("Case")) : QVariant();
    }
    const Variable& variable = data_->dataSet().variable(variable0);
    switch (role) {
    case Qt::DisplayRole:
        return shown(variable.name);
    case Qt::ToolTipRole: {
        QString text = tr("%1 (variable %2, %3)")
                           .arg(shown(variable.name), QString::number(variable0 + 1),
                                QLatin1String(kindName(variable.kind)));
        if (!variable.label.empty()) text += QLatin1Char('\n') + shown(variable.label);
        if (data_->weightVariable() == variable0 + 1) text += QLatin1Char('\n') + tr("weights the cases");
        return text;
    }
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(alignment(variable));
    case Qt::FontRole: {
        if (data_->weightVariable() != variable0 + 1) return {};
        QFont font;
        font.setItalic(true);
        return font;
    }
    default:
        return {};
    }
}

QVariant CaseTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (!current() || section < 0) return {};
    if (orientation == Qt::Horizontal)
        return section < columnCount() ? columnHeader(section, role) : QVariant();
    if (section >= rowCount()) return {};
    switch (role) {
    case Qt::DisplayRole:
        return first_ + section + 1;
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(Qt::Alignment(Qt::AlignRight | Qt::AlignVCenter));
    case Qt::ToolTipRole:
        return leftOut(first_ + section) ? QVariant(tr("not selected")) : QVariant();
    case Qt::FontRole: { // also without colours, a case left out can be told from others
        if (!leftOut(first_ + section)) return {};
        QFont font;
        font.setStrikeOut(true);
        return font;
    }
    default:
        return {};
    }
}

} // namespace korvana::desktop
