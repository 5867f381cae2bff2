#pragma once

#include <cstddef>
#include <memory>
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

    /// Cells in memory of somebody else, which are only read. The owner keeps them where they are for as long
    /// as the column lives; their values may change meanwhile.
    static Column borrowed(const double* cells, std::shared_ptr<const void> owner);

    /// Makes room for more or fewer cells. The cells keep their values; those of a big column are not copied,
    /// though they may move. When this throws, nothing has changed. Not for borrowed cells.
    void resize(std::size_t cells);

    /// For writing; not for borrowed cells.
    double* data();
    std::span<const double> cells(std::size_t count) const { return {cells_, count}; }

private:
    void requireOwn() const;

    double* cells_ = nullptr;
    std::size_t bytes_ = 0;             ///< 0 when borrowed
    std::shared_ptr<const void> owner_; ///< of borrowed cells
};

} // namespace korvana
