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

    /// Makes room; waits for those who hold the columns.
    /// @param rows      needed at least
    /// @param expected  better, when there is memory for them; may be less than the rows
    void require(std::size_t rows, std::size_t expected);

    /// The cells stay where they are while this is held.
    std::shared_lock<std::shared_mutex> hold() { return std::shared_lock(guard_); }
    std::span<double* const> cells() const { return cells_; }

    /// The columns, cut to a number of rows that there was room for.
    std::vector<Column> take(std::size_t rows);

private:
    void resize(std::size_t rows);

    std::shared_mutex guard_;
    std::vector<Column> columns_;
    std::vector<double*> cells_; ///< of the columns
    std::size_t rows_ = 0;
};

} // namespace korvana
