#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <span>

namespace korvana {

/** The cells of one variable, 8 bytes each. A new column is not initialised: its pages are first touched by
    whoever writes the cells, so that a big file costs each page one fault. Throws std::bad_alloc. */
class Column {
public:
    Column() = default;
    explicit Column(std::size_t cells);

    double* data() { return cells_.get(); }
    std::span<const double> cells(std::size_t count) const { return {cells_.get(), count}; }

private:
    struct Release {
        void operator()(double* cells) const { std::free(cells); }
    };
    std::unique_ptr<double[], Release> cells_;
};

} // namespace korvana
