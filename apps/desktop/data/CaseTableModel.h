#pragma once

#include "host/session/ActiveData.h"

#include <QAbstractTableModel>

namespace korvana::desktop {

/// The cases of the active data as a table: the case names first if there are any, then the variables. Reads
/// the data's own columns.
class CaseTableModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Role {
        MissingRole = Qt::UserRole, ///< bool: the cell is missing
        LeftOutRole                 ///< bool: the case is not selected
    };
    /// Rows shown at once. A header of the table keeps 8 bytes per row, and pixel positions are 32-bit
    /// numbers.
    static constexpr int mostRows = 20'000'000;

    using QAbstractTableModel::QAbstractTableModel;

    /// As DataView::setData.
    void show(const ActiveData* data);
    [[nodiscard]] const ActiveData* active() const { return data_; }

    void setShowLabels(bool labels);
    [[nodiscard]] bool showLabels() const { return labels_; }

    /// The case (from 0) of the first row; 0 unless there are more than `mostRows` cases.
    [[nodiscard]] int firstCase() const { return first_; }
    /// Moves the range of rows so that it contains a case.
    void bringCase(int case0);

    [[nodiscard]] int nameColumns() const;
    [[nodiscard]] QString cellText(int row, int column) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    [[nodiscard]] bool current() const { return data_ != nullptr && data_->generation() == generation_; }
    [[nodiscard]] bool leftOut(int case0) const;
    [[nodiscard]] Qt::Alignment alignment(const Variable& variable) const;
    [[nodiscard]] QString missingText(int variable0, double value) const;
    [[nodiscard]] QVariant columnHeader(int column, int role) const;

    const ActiveData* data_ = nullptr;
    int generation_ = 0;
    int variables_ = 0; ///< as last announced to the views
    int first_ = 0;
    bool labels_ = true;
};

} // namespace korvana::desktop
