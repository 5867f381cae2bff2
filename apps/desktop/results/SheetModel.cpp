#include "apps/desktop/results/SheetModel.h"

#include <algorithm>

#include "host/results/Utf8.h"

namespace korvana::desktop {
namespace {

QString shown(std::string_view text) {
    return QString::fromStdString(oneLine(text));
}

} // namespace

SheetModel::SheetModel(const Spreadsheet& sheet, QObject* parent)
    : QAbstractTableModel(parent), sheet_(sheet),
      rows_(static_cast<int>(std::min(sheet.rowCount(), mostRows))) {}

void SheetModel::reload() {
    beginResetModel();
    rows_ = static_cast<int>(std::min(sheet_.rowCount(), mostRows));
    endResetModel();
}

int SheetModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : rows_;
}

int SheetModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(sheet_.columns.size());
}

QVariant SheetModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    const auto row = static_cast<std::size_t>(index.row());
    const auto column = static_cast<std::size_t>(index.column());
    if (row >= sheet_.rowCount() || column >= sheet_.columns.size()) return {};
    switch (role) {
    case Qt::DisplayRole:
        return shown(sheet_.cellText(row, column));
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(sheet_.columns[column].isText() ? Qt::AlignLeft | Qt::AlignVCenter
                                                                   : Qt::AlignRight | Qt::AlignVCenter);
    default:
        return {};
    }
}

QVariant SheetModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (section < 0) return {};
    const auto place = static_cast<std::size_t>(section);
    if (orientation == Qt::Vertical) {
        if (role == Qt::TextAlignmentRole)
            return QVariant::fromValue((sheet_.rowHeadings.empty() ? Qt::AlignRight : Qt::AlignLeft) |
                                       Qt::AlignVCenter);
        if (role != Qt::DisplayRole && (role != Qt::ToolTipRole || sheet_.rowHeadings.empty())) return {};
        return sheet_.rowHeadings.empty() ? QString::number(section + 1) : shown(sheet_.rowHeading(place));
    }
    if (place >= sheet_.columns.size()) return {};
    const Spreadsheet::Column& column = sheet_.columns[place];
    switch (role) {
    case Qt::DisplayRole: {
        const QString first = shown(column.heading1);
        return column.heading2.empty() ? first : first + '\n' + shown(column.heading2);
    }
    case Qt::AccessibleTextRole:
    case Qt::ToolTipRole:
        return shown(column.heading());
    case Qt::TextAlignmentRole:
        return QVariant::fromValue((column.isText() ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
    default:
        return {};
    }
}

} // namespace korvana::desktop
