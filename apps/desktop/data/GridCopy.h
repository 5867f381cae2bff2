#pragma once

#include <QItemSelection>
#include <QString>

namespace korvana::desktop {

class CaseTableModel;

/// Cells as text for the clipboard.
struct GridCopy {
    QString text;
    QString error; ///< why there is no text
    qint64 rows = 0;
    qint64 columns = 0;
};

inline constexpr qint64 mostCopiedCells = 5'000'000;

/// The selected cells as they are shown, tabs between columns, one line per row. Rows and columns without a
/// selected cell are left out; in the others, cells that are not selected or have no value are empty.
/// @param names  adds a first line with the column headings
GridCopy copyCells(const CaseTableModel& model, const QItemSelection& selection, bool names);

} // namespace korvana::desktop
