#include "module/regression/estimation/Dependence.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace ozm::survival {
namespace {

/// What the row of covariate k in a Cholesky factor depends on: the solution c of R c = r, where it is not
/// negligible.
Diagnosis::Dependence DependsOn(const SquareMatrix& factor, std::size_t k) {
    constexpr double negligible = 1e-6;
    ParameterVector c{};
    for (std::size_t j = k; j-- > 0;) {
        c[j] = factor(k, j);
        for (std::size_t l = j + 1; l < k; ++l)
            c[j] -= factor(l, j) * c[l];
        c[j] /= factor(j, j);
    }
    Diagnosis::Dependence dependence{k, {}};
    for (std::size_t j = 0; j < k; ++j)
        if (std::abs(c[j]) > negligible) {
            dependence.on.push_back(j);
            dependence.weights.push_back(c[j]);
        }
    return dependence;
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
            return alone ? Diagnosis::Dependence{k, {}} : DependsOn(factor, k);
        }
        factor(k, k) = std::sqrt(pivot);
    }
    return std::nullopt;
}

} // namespace ozm::survival
