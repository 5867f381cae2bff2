#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

namespace ozm::survival {

/// Several neighbouring components of a vector.
template <std::size_t Lanes>
using Lane [[gnu::vector_size(Lanes * sizeof(double))]] = double;
/// Their bits.
template <std::size_t Lanes>
using LaneBits [[gnu::vector_size(Lanes * sizeof(std::uint64_t))]] = std::uint64_t;

/// A square of numbers, row by row.
template <std::size_t Lanes>
class LaneSquare {
public:
    [[gnu::always_inline]] void Read(std::size_t row, const double* from) {
        std::memcpy(&rows_[row], from, sizeof(rows_[row]));
    }
    [[gnu::always_inline]] void Write(std::size_t row, double* to) const {
        std::memcpy(to, &rows_[row], sizeof(rows_[row]));
    }
    /// Rows become columns: in pairs of rows, blocks of half the lanes change places, then of a quarter, and
    /// so on.
    [[gnu::always_inline]] void Transpose() { Exchange<Lanes / 2>(); }

private:
    template <std::size_t Step>
    [[gnu::always_inline]] void Exchange() {
        if constexpr (Step > 0) {
            for (std::size_t row = 0; row < Lanes; ++row)
                if ((row & Step) == 0)
                    ExchangeBlocks<Step>(rows_[row], rows_[row + Step], std::make_index_sequence<Lanes>());
            Exchange<Step / 2>();
        }
    }
    template <std::size_t Step, std::size_t... L>
    [[gnu::always_inline]] static void ExchangeBlocks(Lane<Lanes>& upper, Lane<Lanes>& lower,
                                                      std::index_sequence<L...> /*lanes*/) {
        const Lane<Lanes> left =
            __builtin_shufflevector(upper, lower, ((L & Step) != 0 ? Lanes + L - Step : L)...);
        lower = __builtin_shufflevector(upper, lower, ((L & Step) != 0 ? Lanes + L : L + Step)...);
        upper = left;
    }

    Lane<Lanes> rows_[Lanes];
};

} // namespace ozm::survival
