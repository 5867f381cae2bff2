#pragma once

#include <cstddef>
#include <span>

namespace korvana {

/// The cells of one variable, 8 bytes each. A new column is not initialised: its pages are first touched when
/// the cells are written, so that each page faults only once. Throws std::bad_alloc.
class Column {
public:
    Column() = default;
    explicit Column(std::size_t cells);
    Column(Column&& other) noexcept;
    Column& operator=(Column&& other) noexcept;
    Column(const Column&) = delete;
    Column& operator=(const Column&) = delete;
    ~Column();

    /// Makes room for more or fewer cells. The cells keep their values; those of a big column are not copied,
    /// though they may move. When this throws, nothing has changed.
    void resize(std::size_t cells);

    double* data() { return cells_; }
    std::span<const double> cells(std::size_t count) const { return {cells_, count}; }

private:
    double* cells_ = nullptr;
    std::size_t bytes_ = 0;
};

} // namespace korvana
