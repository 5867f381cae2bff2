#include "module/regression/estimation/LuFactors.h"

#include <cmath>
#include <utility>

namespace ozm::survival {

std::optional<LuFactors> LuFactors::Of(const SquareMatrix& matrix, std::size_t size) {
    LuFactors lu;
    lu.factors_ = matrix;
    lu.size_ = size;
    SquareMatrix& a = lu.factors_;
    ParameterVector scale{};
    for (std::size_t i = 0; i < size; ++i) {
        double largest = 0.0;
        for (std::size_t j = 0; j < size; ++j)
            largest = std::fmax(largest, std::abs(a(i, j)));
        if (!(largest > 0.0)) return std::nullopt;
        scale[i] = 1.0 / largest;
    }
    for (std::size_t k = 0; k < size; ++k) {
        std::size_t pivot = k;
        double largest = 0.0;
        for (std::size_t i = k; i < size; ++i) {
            const double scaled = scale[i] * std::abs(a(i, k));
            if (!(scaled > largest)) continue;
            largest = scaled;
            pivot = i;
        }
        if (largest == 0.0) return std::nullopt;
        lu.order_[k] = pivot;
        if (pivot != k) {
            for (std::size_t j = 0; j < size; ++j)
                std::swap(a(pivot, j), a(k, j));
            std::swap(scale[pivot], scale[k]);
            lu.determinant_ = -lu.determinant_;
        }
        lu.determinant_ *= a(k, k);
        for (std::size_t i = k + 1; i < size; ++i) {
            const double factor = a(i, k) / a(k, k);
            a(i, k) = factor;
            for (std::size_t j = k + 1; j < size; ++j)
                a(i, j) -= factor * a(k, j);
        }
    }
    if (!(lu.determinant_ >= leastDeterminant)) return std::nullopt;
    return lu;
}

void LuFactors::Solve(std::span<double> right) const {
    for (std::size_t k = 0; k < size_; ++k)
        std::swap(right[k], right[order_[k]]);
    for (std::size_t i = 1; i < size_; ++i)
        for (std::size_t j = 0; j < i; ++j)
            right[i] -= factors_(i, j) * right[j];
    for (std::size_t i = size_; i-- > 0;) {
        for (std::size_t j = i + 1; j < size_; ++j)
            right[i] -= factors_(i, j) * right[j];
        right[i] /= factors_(i, i);
    }
}

SquareMatrix LuFactors::Inverse() const {
    SquareMatrix inverse;
    for (std::size_t k = 0; k < size_; ++k) {
        ParameterVector column{};
        column[k] = 1.0;
        Solve(column);
        for (std::size_t i = 0; i < size_; ++i)
            inverse(i, k) = column[i];
    }
    return inverse;
}

} // namespace ozm::survival
