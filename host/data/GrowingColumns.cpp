#include "host/data/GrowingColumns.h"

#include <mutex>
#include <new>
#include <utility>

namespace korvana {

void GrowingColumns::require(std::size_t rows, std::size_t expected) {
    if (rows <= rows_) return;
    const std::unique_lock<std::shared_mutex> alone(guard_);
    try {
        if (expected > rows) {
            resize(expected);
            return;
        }
    } catch (const std::bad_alloc&) { // the expected size is only a guess: try the size needed
    }
    resize(rows);
}

void GrowingColumns::resize(std::size_t rows) {
    rows_ = 0; // until all have grown
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        columns_[i].resize(rows);
        cells_[i] = columns_[i].data();
    }
    rows_ = rows;
}

std::vector<Column> GrowingColumns::take(std::size_t rows) {
    resize(rows);
    return std::move(columns_);
}

} // namespace korvana
