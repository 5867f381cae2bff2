#include "apps/desktop/dialogs/VariableModel.h"

#include "support/CAnalysisSupport.h"

#include <QDataStream>
#include <QGuiApplication>
#include <QIODevice>
#include <QMimeData>
#include <QPalette>

#include <algorithm>

namespace korvana::desktop {
namespace {

QString variablesMimeType() {
    return QStringLiteral("application/x-korvana-variables");
}

} // namespace

std::vector<KnownVariable> knownVariables(ozm::CAnalysisSupport& analysis) {
    std::vector<KnownVariable> known;
    const int count = analysis.NumberOfVariables();
    for (int number = 1; number <= count; ++number) {
        std::string name;
        if (analysis.getvn5(number, name) != 0) name.clear();
        known.push_back(
            {QString::fromStdString(name), QString::fromStdString(analysis.VariableLabel(number))});
    }
    return known;
}

VariableModel::VariableModel(const std::vector<KnownVariable>& known, int origin, QObject* parent)
    : QAbstractListModel(parent), known_(known), origin_(origin) {}

void VariableModel::setNumbers(std::vector<int> numbers) {
    beginResetModel();
    numbers_ = std::move(numbers);
    endResetModel();
}

void VariableModel::setFaint(std::vector<bool> faint) {
    if (faint == faint_) return;
    faint_ = std::move(faint);
    if (!numbers_.empty()) emit dataChanged(index(0), index(rowCount() - 1), {Qt::ForegroundRole});
}

int VariableModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(numbers_.size());
}

QVariant VariableModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount()) return {};
    const int number = numbers_[static_cast<std::size_t>(index.row())];
    const auto place = static_cast<std::size_t>(number - 1);
    if (role == NumberRole) return number;
    if (number < 1 || place >= known_.size())
        return role == Qt::DisplayRole ? QStringLiteral("(no variable %1)").arg(number) : QVariant{};
    const KnownVariable& variable = known_[place];
    switch (role) {
    case Qt::DisplayRole:
        return variable.label.isEmpty() ? variable.name
                                        : variable.name + QStringLiteral("  –  ") + variable.label;
    case Qt::ToolTipRole:
        return QStringLiteral("%1: %2").arg(number).arg(data(index, Qt::DisplayRole).toString());
    case Qt::ForegroundRole:
        if (place < faint_.size() && faint_[place])
            return QGuiApplication::palette().brush(QPalette::PlaceholderText);
        return {};
    default:
        return {};
    }
}

Qt::ItemFlags VariableModel::flags(const QModelIndex& index) const {
    if (!index.isValid()) return Qt::NoItemFlags;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled | Qt::ItemNeverHasChildren;
}

QStringList VariableModel::mimeTypes() const {
    return {variablesMimeType()};
}

QMimeData* VariableModel::mimeData(const QModelIndexList& indexes) const {
    std::vector<int> rows;
    for (const QModelIndex& index : indexes)
        rows.push_back(index.row());
    std::sort(rows.begin(), rows.end());
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << origin_ << static_cast<int>(rows.size());
    for (const int row : rows)
        out << numbers_[static_cast<std::size_t>(row)];
    auto* data = new QMimeData;
    data->setData(variablesMimeType(), bytes);
    return data;
}

bool holdsVariables(const QMimeData* data) {
    return data != nullptr && data->hasFormat(variablesMimeType());
}

DraggedVariables draggedVariables(const QMimeData& data) {
    DraggedVariables dragged;
    const QByteArray bytes = data.data(variablesMimeType());
    QDataStream in(bytes);
    int count = 0;
    in >> dragged.origin >> count;
    for (int i = 0; i < count; ++i) {
        int number = 0;
        in >> number;
        if (in.status() != QDataStream::Ok) break;
        dragged.numbers.push_back(number);
    }
    return dragged;
}

} // namespace korvana::desktop
