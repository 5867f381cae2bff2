#pragma once

#include "host/data/Column.h"

#include <cstddef>
#include <shared_mutex>
#include <span>
#include <vector>

namespace korvana {

/// Columns of equal length that grow while several threads write into them.
class GrowingColumns {
public:
    explicit GrowingColumns(std::size_t columns) : columns_(columns), cells_(columns) {}

    /// Makes room; waits until nobody holds the columns.
    /// @param rows  the number needed
    /// @param expected  the number to prefer if there is memory; may be less than rows
    void require(std::size_t rows, std::size_t expected);

    /// The cells stay where they are while this is held.
    std::shared_lock<std::shared_mutex> hold() { return std::shared_lock(guard_); }
    std::span<double* const> cells() const { return cells_; }

    /// The columns, cut to a number of rows.
    std::vector<Column> take(std::size_t rows);

private:
    void resize(std::size_t rows);

    std::shared_mutex guard_;
    std::vector<Column> columns_;
    std::vector<double*> cells_; ///< of the columns
    std::size_t rows_ = 0;
};

} // namespace korvana
