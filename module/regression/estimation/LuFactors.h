#pragma once

#include "module/regression/estimation/SquareMatrix.h"

#include <array>
#include <cstddef>
#include <optional>
#include <span>

namespace ozm::survival {

/// The factors of a matrix by LU decomposition with scaled partial pivoting: each row's scale is 1 over its
/// largest magnitude, and the pivot of a column is the row with the largest scaled magnitude of those left
/// (Forsythe & Moler 1967, Computer Solution of Linear Algebraic Systems).
class LuFactors {
public:
    /// A matrix whose determinant is below this counts as singular.
    static constexpr double leastDeterminant = 1e-14;

    /// The factors of the first `size` rows and columns (1 to 48). None of a singular matrix: a row of zeros,
    /// a column without a pivot, or a determinant below `leastDeterminant`, also one below 0. A determinant
    /// that overflows does not make a matrix singular.
    static std::optional<LuFactors> Of(const SquareMatrix& matrix, std::size_t size);

    /// The vector x with A x = right, in its place.
    void Solve(std::span<double> right) const;
    [[nodiscard]] SquareMatrix Inverse() const;
    [[nodiscard]] double Determinant() const { return determinant_; }

private:
    SquareMatrix factors_;                            ///< L below the diagonal, with ones on it; U above
    std::array<std::size_t, mostParameters> order_{}; ///< the row that was exchanged into each place
    std::size_t size_ = 0;
    double determinant_ = 1.0;
};

} // namespace ozm::survival
