#include "apps/desktop/data/GridCopy.h"

#include "apps/desktop/data/CaseTableModel.h"
#include "apps/desktop/data/GridText.h"

#include <algorithm>
#include <set>
#include <vector>

namespace korvana::desktop {
namespace {

struct Rows {
    int first;
    int last;
};

/// The selected rows in order, without overlaps: a selection of millions of rows is a few of these.
std::vector<Rows> rowsOf(const QItemSelection& selection) {
    std::vector<Rows> all;
    for (const QItemSelectionRange& range : selection)
        if (range.isValid()) all.push_back({range.top(), range.bottom()});
    std::sort(all.begin(), all.end(), [](const Rows& a, const Rows& b) { return a.first < b.first; });
    std::vector<Rows> merged;
    for (const Rows& rows : all) {
        if (merged.empty() || rows.first > merged.back().last + 1)
            merged.push_back(rows);
        else
            merged.back().last = std::max(merged.back().last, rows.last);
    }
    return merged;
}

} // namespace

GridCopy copyCells(const CaseTableModel& model, const QItemSelection& selection, bool names) {
    GridCopy copied;
    const std::vector<Rows> rows = rowsOf(selection);
    std::set<int> columns;
    for (const QItemSelectionRange& range : selection)
        for (int column = range.left(); range.isValid() && column <= range.right(); ++column)
            columns.insert(column);
    for (const Rows& each : rows)
        copied.rows += each.last - each.first + 1;
    copied.columns = static_cast<qint64>(columns.size());
    if (copied.rows == 0 || copied.columns == 0) {
        copied.error = CaseTableModel::tr("Nothing is selected; select the cells to copy.");
        return copied;
    }
    if (copied.rows * copied.columns > mostCopiedCells) {
        copied.error = CaseTableModel::tr("%1 cells are too many to copy (the limit is %2); select fewer.")
                           .arg(countText(copied.rows * copied.columns), countText(mostCopiedCells));
        return copied;
    }
    const auto line = [&](auto&& cell) {
        bool first = true;
        for (const int column : columns) {
            if (!first) copied.text += QLatin1Char('\t');
            first = false;
            copied.text += cell(column);
        }
        copied.text += QLatin1Char('\n');
    };
    if (names)
        line(
            [&](int column) { return model.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString(); });
    const bool block = selection.size() == 1;
    for (const Rows& each : rows) {
        for (int row = each.first; row <= each.last; ++row) {
            line([&](int column) {
                return block || selection.contains(model.index(row, column)) ? model.cellText(row, column)
                                                                             : QString();
            });
        }
    }
    return copied;
}

} // namespace korvana::desktop
