#include "module/regression/estimation/Dependence.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace ozm::survival {
namespace {

/// Which of the covariates before k the row of its Cholesky factor depends on: the solution c of R c = r.
std::vector<std::size_t> DependsOn(const SquareMatrix& factor, std::size_t k) {
    constexpr double negligible = 1e-6;
    ParameterVector c{};
    std::vector<std::size_t> on;
    for (std::size_t j = k; j-- > 0;) {
        c[j] = factor(k, j);
        for (std::size_t l = j + 1; l < k; ++l)
            c[j] -= factor(l, j) * c[l];
        c[j] /= factor(j, j);
        if (std::abs(c[j]) > negligible) on.insert(on.begin(), j);
    }
    return on;
}

} // namespace

std::optional<Diagnosis::Dependence> DependenceIn(const SquareMatrix& products, std::size_t size,
                                                  double least) {
    constexpr double leastPivot = 1e-10;
    SquareMatrix factor;
    for (std::size_t k = 0; k < size; ++k) {
        double pivot = products(k, k);
        for (std::size_t j = 0; j < k; ++j) {
            double sum = products(k, j);
            for (std::size_t l = 0; l < j; ++l)
                sum -= factor(k, l) * factor(j, l);
            factor(k, j) = sum / factor(j, j);
            pivot -= factor(k, j) * factor(k, j);
        }
        if (!(pivot > std::max(leastPivot * products(k, k), least))) {
            const bool alone = !(products(k, k) > least);
            return Diagnosis::Dependence{k, alone ? std::vector<std::size_t>{} : DependsOn(factor, k)};
        }
        factor(k, k) = std::sqrt(pivot);
    }
    return std::nullopt;
}

} // namespace ozm::survival
