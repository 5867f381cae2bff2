#pragma once

#include "module/regression/estimation/SquareMatrix.h"

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace ozm::survival {

/// The factor L of a symmetric matrix A = L L' that tolerates rank deficiency, in packed storage: the lower
/// triangle row by row, the element (i, j), j <= i, counted from 0, at i (i + 1) / 2 + j (Healy 1968, Applied
/// Statistics 17:195-199, algorithms AS 6 and AS 7).
class PackedCholesky {
public:
    static constexpr std::size_t SizeOf(std::size_t order) { return order * (order + 1) / 2; }

    /// A pivot that is lost to rounding, at most so much of its diagonal element, becomes 0, and so do the
    /// elements below it. None where A is not positive semidefinite: a pivot below 0, or an element below a
    /// pivot of 0 whose square is more than 1e-10 of its own diagonal element.
    static std::optional<PackedCholesky> Of(std::span<const double> packed, std::size_t order,
                                            double lostPivot = 1e-5);

    [[nodiscard]] std::size_t Deficiency() const { return deficiency_; }
    /// The first row (from 0) whose pivot was lost, `order` where there is none.
    [[nodiscard]] std::size_t FirstLost() const;
    /// L, packed.
    [[nodiscard]] std::span<const double> Factor() const { return factor_; }
    /// Solves A x = right in its place. False at a pivot of 0.
    [[nodiscard]] bool Solve(std::span<double> right) const;
    /// The same, also with lost pivots: they leave 0 in their places.
    void SolveRest(std::span<double> right) const;
    /// The inverse of A, in the same storage; rows and columns of lost pivots are zeros.
    [[nodiscard]] std::vector<double> Inverse() const;

private:
    [[nodiscard]] double At(std::size_t i, std::size_t j) const { return factor_[SizeOf(i) + j]; }

    std::size_t order_ = 0;
    std::size_t deficiency_ = 0;
    std::vector<double> factor_;
};

/// The first rows and columns of a symmetric matrix in packed storage, and all of such a matrix.
std::vector<double> Pack(const SquareMatrix& matrix, std::size_t order);
SquareMatrix Unpack(std::span<const double> packed, std::size_t order);

} // namespace ozm::survival
