#include "module/regression/cox/RiskSetSums.h"

#include "module/regression/estimation/CaseRows.h"
#include "module/regression/estimation/CrossProducts.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace ozm::survival {
namespace {

constexpr std::size_t chunk = 64; ///< cases whose covariates are in use at a time

// Each function is translated for vectors of several widths. Its sums are the same in all of them: they run
// over the cases, while a vector holds neighbouring covariates, or over the covariates, while it holds
// neighbouring cases.

template <std::size_t Lanes>
[[gnu::always_inline]] inline bool Predict(const OrderedSample& sample, std::span<const double> parameters,
                                           double largest, std::span<double> eta) {
    for (std::size_t first = 0; first < sample.cases; first += chunk) {
        const std::size_t count = std::min(chunk, sample.cases - first);
        double* const here = eta.data() + first;
        std::fill_n(here, count, 0.0);
        for (std::size_t k = 0; k < sample.covariates; ++k) {
            const double* const column = sample.Column(k) + first;
            const double parameter = parameters[k];
            for (std::size_t i = 0; i < count; ++i)
                here[i] += column[i] * parameter;
        }
        bool inRange = true;
        for (std::size_t i = 0; i < count; ++i)
            inRange &= std::abs(here[i]) <= largest;
        if (!inRange) return false;
    }
    return true;
}

template <std::size_t Lanes>
[[gnu::always_inline]] inline void Sum(const OrderedSample& sample, const RiskSetTerms& terms,
                                       std::span<double> gradient, SquareMatrix& information) {
    const std::size_t size = sample.covariates;
    const std::size_t padded = (size + Lanes - 1) / Lanes * Lanes;
    CrossProducts<Lanes> within(size);  // sum of d S2/S0
    CrossProducts<Lanes> between(size); // sum of d (S1/S0)(S1/S0)'
    alignas(64) CaseRows<chunk> rows{};
    alignas(64) ParameterVector u{};
    alignas(64) ParameterVector s1{};
    std::size_t block = 0;
    std::size_t blockEnd = 0;
    for (std::size_t first = 0; first < sample.cases; first += chunk) {
        const std::size_t count = std::min(chunk, sample.cases - first);
        TurnIntoRows<Lanes>(
            size, count, [&](std::size_t k) { return sample.Column(k) + first; }, rows);
        for (std::size_t c = 0; c < count; ++c) {
            const std::size_t i = first + c;
            while (i == blockEnd) {
                blockEnd += static_cast<std::size_t>(sample.blocks[block++]);
                s1.fill(0.0);
            }
            const double* const x = rows[c].data();
            const double residual = static_cast<double>(terms.observed[i]) - terms.expected[i];
            const double w = terms.weight[i];
            const double root = std::sqrt(terms.expected[i]);
            const double meanRoot = terms.meanRoot[i];
            double* const row = within.Room();
            double* const mean = between.Room();
            for (std::size_t k = 0; k < padded; ++k) {
                u[k] += residual * x[k];
                s1[k] += w * x[k];
                row[k] = root * x[k];
                mean[k] = meanRoot * s1[k];
            }
            within.Add();
            between.Add(meanRoot > 0.0);
        }
    }
    const SquareMatrix& all = within.Sum();
    const SquareMatrix& means = between.Sum();
    for (std::size_t k = 0; k < size; ++k) {
        gradient[k] = u[k];
        for (std::size_t l = 0; l < size; ++l)
            information(k, l) = all(k, l) - means(k, l);
    }
}

#define KORVANA_KERNELS(Name, Lanes, ...)                                                                    \
    __VA_ARGS__ bool Predict##Name(const OrderedSample& sample, std::span<const double> parameters,          \
                                   double largest, std::span<double> eta) {                                  \
        return Predict<Lanes>(sample, parameters, largest, eta);                                             \
    }                                                                                                        \
    __VA_ARGS__ void Sum##Name(const OrderedSample& sample, const RiskSetTerms& terms,                       \
                               std::span<double> gradient, SquareMatrix& information) {                      \
        Sum<Lanes>(sample, terms, gradient, information);                                                    \
    }

KORVANA_KERNELS(Two, 2, )
#if defined(__x86_64__)
KORVANA_KERNELS(Four, 4, [[gnu::target("avx2")]])
KORVANA_KERNELS(Eight, 8, [[gnu::target("avx512f")]])
#endif

std::vector<RiskSetKernels> Usable() {
    std::vector<RiskSetKernels> kernels;
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx512f")) kernels.push_back({PredictEight, SumEight});
    if (__builtin_cpu_supports("avx2")) kernels.push_back({PredictFour, SumFour});
#endif
    kernels.push_back({PredictTwo, SumTwo});
    return kernels;
}

} // namespace

std::span<const RiskSetKernels> UsableRiskSetKernels() {
    static const std::vector<RiskSetKernels> kernels = Usable();
    return kernels;
}

} // namespace ozm::survival
