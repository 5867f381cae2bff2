#pragma once

#include "module/regression/estimation/Lanes.h"
#include "module/regression/estimation/SquareMatrix.h"

#include <array>
#include <cstddef>
#include <cstring>

namespace ozm::survival {

/// The sum of y y' over many vectors y, gathered in blocks so that the processor's vector units are used:
/// `Lanes` components at a time. Every element is a sum over the vectors in their order, added up in the same
/// way whatever its place and the number of lanes: equal components of the vectors give equal rows and
/// columns to the last bit, and results do not depend on the machine.
template <std::size_t Lanes>
class CrossProducts {
public:
    explicit CrossProducts(std::size_t size) : size_(size) {} ///< of the vectors, 1 to 48

    /// Room for a further vector, to be filled by the caller; components beyond the size are 0.
    [[gnu::always_inline]] double* Room() {
        if (count_ == blockRows) AddBlock();
        return rows_[count_].data();
    }
    /// Whether what stands there takes part. (Without a branch: which vectors do can be hard to foresee.)
    [[gnu::always_inline]] void Add(bool takesPart = true) { count_ += takesPart ? 1 : 0; }
    /// The sum so far.
    [[gnu::always_inline]] const SquareMatrix& Sum() {
        AddBlock();
        for (std::size_t i = 0; i < size_; ++i)
            for (std::size_t j = i + 1; j < size_; ++j)
                sum_(i, j) = sum_(j, i);
        return sum_;
    }

private:
    static constexpr std::size_t blockRows = 64;
    // Tiles whose sums stay in registers.
    static constexpr std::size_t height = Lanes == 8 ? 8 : 4;
    static constexpr std::size_t vectors = Lanes == 8 ? 1 : 2;
    static constexpr std::size_t width = vectors * Lanes;
    static_assert(mostParameters % height == 0 && mostParameters % width == 0);

    [[gnu::always_inline]] void AddBlock() {
        for (std::size_t i = 0; i < size_; i += height)
            for (std::size_t j = 0; j < i + height; j += width)
                if (size_ - i > height / 2)
                    AddTile<height>(i, j);
                else
                    AddTile<height / 2>(i, j);
        count_ = 0;
    }
    template <std::size_t Rows>
    [[gnu::always_inline]] void AddTile(std::size_t first, std::size_t second) {
        Lane<Lanes> tile[Rows][vectors] = {};
        for (std::size_t r = 0; r < count_; ++r) {
            const double* const row = rows_[r].data();
            Lane<Lanes> right[vectors];
            for (std::size_t j = 0; j < vectors; ++j)
                std::memcpy(&right[j], row + second + j * Lanes, sizeof(right[j]));
            for (std::size_t i = 0; i < Rows; ++i)
                for (std::size_t j = 0; j < vectors; ++j)
                    tile[i][j] += row[first + i] * right[j];
        }
        for (std::size_t i = 0; i < Rows; ++i)
            for (std::size_t j = 0; j < vectors; ++j)
                for (std::size_t l = 0; l < Lanes; ++l)
                    sum_(first + i, second + j * Lanes + l) += tile[i][j][l];
    }

    std::size_t size_;
    std::size_t count_ = 0;
    alignas(64) std::array<std::array<double, mostParameters>, blockRows> rows_{};
    SquareMatrix sum_; ///< on and below the diagonal, by tiles
};

} // namespace ozm::survival
