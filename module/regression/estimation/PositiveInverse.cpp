#include "module/regression/estimation/PositiveInverse.h"

#include <cmath>

namespace ozm::survival {

std::optional<SquareMatrix> PositiveInverse(const SquareMatrix& matrix, std::size_t size) {
    constexpr double leastPivot = 1e-14;
    SquareMatrix factor;
    for (std::size_t i = 0; i < size; ++i)
        for (std::size_t j = 0; j <= i; ++j) {
            double sum = matrix(i, j);
            for (std::size_t k = 0; k < j; ++k)
                sum -= factor(i, k) * factor(j, k);
            if (j < i)
                factor(i, j) = sum / factor(j, j);
            else if (sum > leastPivot * matrix(i, i) && std::isfinite(sum))
                factor(i, i) = std::sqrt(sum);
            else
                return std::nullopt;
        }
    // By the inverse of the factor, in place of it.
    for (std::size_t j = 0; j < size; ++j) {
        factor(j, j) = 1.0 / factor(j, j);
        for (std::size_t i = j + 1; i < size; ++i) {
            double sum = 0.0;
            for (std::size_t k = j; k < i; ++k)
                sum -= factor(i, k) * factor(k, j);
            factor(i, j) = sum / factor(i, i);
        }
    }
    SquareMatrix inverse;
    for (std::size_t i = 0; i < size; ++i)
        for (std::size_t j = 0; j <= i; ++j) {
            double sum = 0.0;
            for (std::size_t k = i; k < size; ++k)
                sum += factor(k, i) * factor(k, j);
            inverse(i, j) = inverse(j, i) = sum;
        }
    return inverse;
}

} // namespace ozm::survival
