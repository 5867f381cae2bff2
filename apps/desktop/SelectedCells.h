#pragma once

#include <QItemSelection>
#include <algorithm>
#include <utility>
#include <vector>

namespace korvana::desktop {

/// The rows and columns of a table that have a selected cell, kept as ranges: even millions of rows are only
/// a few.
class SelectedCells {
public:
    using Stretch = std::pair<int, int>; ///< first and last

    explicit SelectedCells(const QItemSelection& selection) : selection_(selection) {
        std::vector<Stretch> columns;
        for (const QItemSelectionRange& range : selection) {
            if (!range.isValid()) continue;
            rows_.emplace_back(range.top(), range.bottom());
            columns.emplace_back(range.left(), range.right());
        }
        rows_ = joined(std::move(rows_));
        for (const auto& [first, last] : rows_)
            rowCount_ += last - first + 1;
        for (const auto& [first, last] : joined(std::move(columns)))
            for (int column = first; column <= last; ++column)
                columns_.push_back(column);
    }

    [[nodiscard]] bool isEmpty() const { return columns_.empty(); }
    /// Ascending, without overlap.
    [[nodiscard]] const std::vector<Stretch>& rows() const { return rows_; }
    [[nodiscard]] const std::vector<int>& columns() const { return columns_; }
    [[nodiscard]] qint64 rowCount() const { return rowCount_; }
    [[nodiscard]] qint64 cellCount() const { return rowCount_ * static_cast<qint64>(columns_.size()); }

    /// Whether a cell in one of these rows and columns is itself selected.
    [[nodiscard]] bool contains(int row, int column) const {
        if (selection_.size() == 1) return true; // a single block: no cell in it is left out
        return std::any_of(selection_.begin(), selection_.end(),
                           [row, column](const QItemSelectionRange& range) {
                               return range.isValid() && row >= range.top() && row <= range.bottom() &&
                                      column >= range.left() && column <= range.right();
                           });
    }

private:
    static std::vector<Stretch> joined(std::vector<Stretch> stretches) {
        std::sort(stretches.begin(), stretches.end());
        std::vector<Stretch> result;
        for (const Stretch& one : stretches) {
            if (!result.empty() && one.first <= result.back().second + 1) {
                result.back().second = std::max(result.back().second, one.second);
            } else {
                result.push_back(one);
            }
        }
        return result;
    }

    const QItemSelection& selection_;
    std::vector<Stretch> rows_;
    std::vector<int> columns_;
    qint64 rowCount_ = 0;
};

} // namespace korvana::desktop
