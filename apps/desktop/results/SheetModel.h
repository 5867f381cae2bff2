#pragma once

#include <QAbstractTableModel>

#include "host/results/Spreadsheet.h"

namespace korvana::desktop {

/// A results table for Qt's views, reading its columns without a copy. The table must outlive the model; call
/// `reload` when it has changed.
class SheetModel : public QAbstractTableModel {
    Q_OBJECT

public:
    /// Qt's views count pixels in an int; longer tables could not be scrolled.
    static constexpr std::size_t mostRows = 20'000'000;

    explicit SheetModel(const Spreadsheet& sheet, QObject* parent = nullptr);

    [[nodiscard]] const Spreadsheet& sheet() const { return sheet_; }
    [[nodiscard]] bool isCut() const { return sheet_.rowCount() > mostRows; }
    void reload();

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    const Spreadsheet& sheet_;
    int rows_ = 0;
};

} // namespace korvana::desktop
