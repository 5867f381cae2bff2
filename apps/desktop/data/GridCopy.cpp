#include "apps/desktop/data/GridCopy.h"

#include "apps/desktop/SelectedCells.h"
#include "apps/desktop/data/CaseTableModel.h"
#include "apps/desktop/data/GridText.h"

namespace korvana::desktop {

GridCopy copyCells(const CaseTableModel& model, const QItemSelection& selection, bool names) {
    GridCopy copied;
    const SelectedCells cells(selection);
    copied.rows = cells.rowCount();
    copied.columns = static_cast<qint64>(cells.columns().size());
    if (cells.isEmpty()) {
        copied.error = CaseTableModel::tr("Nothing is selected; select the cells to copy.");
        return copied;
    }
    if (cells.cellCount() > mostCopiedCells) {
        copied.error = CaseTableModel::tr("%1 cells are too many to copy (the limit is %2); select fewer.")
                           .arg(countText(cells.cellCount()), countText(mostCopiedCells));
        return copied;
    }
    const auto line = [&](auto&& cell) {
        bool first = true;
        for (const int column : cells.columns()) {
            if (!first) copied.text += QLatin1Char('\t');
            first = false;
            copied.text += cell(column);
        }
        copied.text += QLatin1Char('\n');
    };
    if (names)
        line(
            [&](int column) { return model.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString(); });
    for (const auto& [first, last] : cells.rows()) {
        for (int row = first; row <= last; ++row)
            line([&](int column) {
                return cells.contains(row, column) ? model.cellText(row, column) : QString();
            });
    }
    return copied;
}

} // namespace korvana::desktop
