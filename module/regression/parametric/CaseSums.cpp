#include "module/regression/parametric/CaseSums.h"

#include "module/regression/estimation/CaseRows.h"
#include "module/regression/estimation/CrossProducts.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace ozm::survival {
namespace {

constexpr std::size_t chunk = 8; ///< blocks that are in use at a time

// Each function is translated for vectors of several widths. Its sums are the same in all of them: a sum over
// cases is made of eight, one for each place in a block.

/// The predictors of a block.
template <std::size_t Lanes>
[[gnu::always_inline]] inline void PredictBlock(const Eight* columns, std::span<const double> coefficients,
                                                Eight& result) {
    for (std::size_t part = 0; part < 8; part += Lanes) {
        Lane<Lanes> sum = {};
        for (std::size_t k = 0; k < coefficients.size(); ++k) {
            Lane<Lanes> x;
            std::memcpy(&x, columns[k].values.data() + part, sizeof(x));
            sum += x * coefficients[k];
        }
        std::memcpy(result.values.data() + part, &sum, sizeof(sum));
    }
}

template <std::size_t Lanes>
[[gnu::always_inline]] inline void Predict(const CaseBlocks& cases, std::span<const double> coefficients,
                                           std::span<Eight> predictors) {
    for (std::size_t b = 0; b < cases.Blocks(); ++b)
        PredictBlock<Lanes>(cases.Block(b), coefficients, predictors[b]);
}

/// Adds the terms of some blocks times each column.
template <std::size_t Lanes>
[[gnu::always_inline]] inline void AddTerms(const CaseBlocks& cases, std::size_t first, std::size_t count,
                                            const Eight* terms, Eight* sums) {
    const std::size_t columns = cases.Columns();
    const Eight* const blocks = cases.Block(first);
    for (std::size_t part = 0; part < 8; part += Lanes)
        for (std::size_t k = 0; k < columns; ++k) {
            Lane<Lanes> sum;
            std::memcpy(&sum, sums[k].values.data() + part, sizeof(sum));
            for (std::size_t b = 0; b < count; ++b) {
                Lane<Lanes> x;
                Lane<Lanes> term;
                std::memcpy(&x, blocks[b * columns + k].values.data() + part, sizeof(x));
                std::memcpy(&term, terms[b].values.data() + part, sizeof(term));
                sum += x * term;
            }
            std::memcpy(sums[k].values.data() + part, &sum, sizeof(sum));
        }
}

template <std::size_t Lanes>
[[gnu::always_inline]] inline void Sum(const CaseBlocks& cases, std::span<const Eight> terms,
                                       std::span<double> sums) {
    std::array<Eight, mostParameters> lanes{};
    for (std::size_t first = 0; first < cases.Blocks(); first += chunk)
        AddTerms<Lanes>(cases, first, std::min(chunk, cases.Blocks() - first), &terms[first], lanes.data());
    for (std::size_t k = 0; k < cases.Columns(); ++k)
        sums[k] = lanes[k].Sum();
}

template <std::size_t Lanes>
[[gnu::always_inline]] inline void Multiply(const CaseBlocks& cases, std::span<const Eight> roots,
                                            SquareMatrix& products) {
    const std::size_t columns = cases.Columns();
    const std::size_t padded = (columns + Lanes - 1) / Lanes * Lanes;
    CrossProducts<Lanes> sum(columns);
    alignas(64) CaseRows<8> rows{};
    for (std::size_t b = 0; b < cases.Blocks(); ++b) {
        const Eight* const block = cases.Block(b);
        TurnIntoRows<Lanes>(
            columns, 8, [block](std::size_t k) { return block[k].values.data(); }, rows);
        for (std::size_t l = 0; l < 8; ++l) {
            const double root = roots[b].values[l];
            double* const row = sum.Room();
            for (std::size_t k = 0; k < padded; ++k)
                row[k] = root * rows[l][k];
            sum.Add();
        }
    }
    products = sum.Sum();
}

/// The ratios of density and upper tail, as `TailRatio` has them, from z and exp(-z^2/2).
[[gnu::always_inline]] inline void TailRatios(const double* z, const double* powers, double* ratios,
                                              std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        const double size = std::abs(z[i]);
        const double y = 0.5 * z[i] * z[i];
        const double centre =
            0.5 - size * (0.398942280444 -
                          0.399903438504 * y /
                              (y + 5.75885480458 -
                               29.8213557808 / (y + 2.62433121679 + 48.6959930692 / (y + 5.92885724438))));
        double fraction = size + 3.99019417011;
        fraction = size + 0.742380924027 + 30.789933034 / fraction;
        fraction = size + 4.8385912808 - 15.1508972451 / fraction;
        fraction = size - 0.151679116635 + 5.29330324926 / fraction;
        fraction = size + 3.98064794e-4 + 1.98615381364 / fraction;
        fraction = size - 3.8052e-8 + 1.00000615302 / fraction;
        const double beyond = 0.398942280385 * powers[i] / fraction;
        double tail = size <= 1.28 ? centre : beyond;
        tail = z[i] < 0.0 ? 1.0 - tail : tail;
        tail = z[i] < -7.0 ? 1.0 : tail;
        const double ratio = 0.39894228 * powers[i] / tail;
        const double far = z[i] + 1.0 / z[i];
        ratios[i] = z[i] > 18.66 ? far : ratio;
    }
}

template <std::size_t Lanes>
[[gnu::always_inline]] inline CensoredSums Expect(const CaseBlocks& cases, std::span<const Eight> y,
                                                  std::span<const double> coefficients, double sigma) {
    std::array<Eight, mostParameters> sums{};
    Eight squares{};
    Eight weights{};
    std::array<Eight, chunk> z{};
    std::array<Eight, chunk> powers{};
    std::array<Eight, chunk> ratios{};
    for (std::size_t first = 0; first < cases.Blocks(); first += chunk) {
        const std::size_t count = std::min(chunk, cases.Blocks() - first);
        for (std::size_t b = 0; b < count; ++b) {
            PredictBlock<Lanes>(cases.Block(first + b), coefficients, z[b]);
            for (std::size_t l = 0; l < 8; ++l)
                z[b].values[l] = (y[first + b].values[l] - z[b].values[l]) / sigma;
            for (std::size_t l = 0; l < 8; ++l)
                powers[b].values[l] = std::exp(-0.5 * z[b].values[l] * z[b].values[l]);
        }
        TailRatios(z[0].values.data(), powers[0].values.data(), ratios[0].values.data(), 8 * count);
        // Places without a case.
        for (std::size_t i = cases.Cases(); i < 8 * (first + count); ++i)
            ratios[i / 8 - first].values[i % 8] = 0.0;
        for (std::size_t b = 0; b < count; ++b)
            for (std::size_t l = 0; l < 8; ++l) {
                const double h = ratios[b].values[l];
                squares.values[l] += h * h;
                weights.values[l] += h * (h - z[b].values[l]);
            }
        AddTerms<Lanes>(cases, first, count, ratios.data(), sums.data());
    }
    CensoredSums result{{}, squares.Sum(), weights.Sum()};
    for (std::size_t k = 0; k < cases.Columns(); ++k)
        result.excess.push_back(sums[k].Sum());
    return result;
}

#define KORVANA_KERNELS(Name, Lanes, ...)                                                                    \
    __VA_ARGS__ void Predict##Name(const CaseBlocks& cases, std::span<const double> coefficients,            \
                                   std::span<Eight> predictors) {                                            \
        Predict<Lanes>(cases, coefficients, predictors);                                                     \
    }                                                                                                        \
    __VA_ARGS__ void Sum##Name(const CaseBlocks& cases, std::span<const Eight> terms,                        \
                               std::span<double> sums) {                                                     \
        Sum<Lanes>(cases, terms, sums);                                                                      \
    }                                                                                                        \
    __VA_ARGS__ void Multiply##Name(const CaseBlocks& cases, std::span<const Eight> roots,                   \
                                    SquareMatrix& products) {                                                \
        Multiply<Lanes>(cases, roots, products);                                                             \
    }                                                                                                        \
    __VA_ARGS__ CensoredSums Expect##Name(const CaseBlocks& cases, std::span<const Eight> y,                 \
                                          std::span<const double> coefficients, double sigma) {              \
        return Expect<Lanes>(cases, y, coefficients, sigma);                                                 \
    }

KORVANA_KERNELS(Two, 2, )
#if defined(__x86_64__)
KORVANA_KERNELS(Four, 4, [[gnu::target("avx2")]])
KORVANA_KERNELS(Eight_, 8, [[gnu::target("avx512f")]])
#endif

std::vector<CaseKernels> Usable() {
    std::vector<CaseKernels> kernels;
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx512f"))
        kernels.push_back({PredictEight_, SumEight_, MultiplyEight_, ExpectEight_});
    if (__builtin_cpu_supports("avx2")) kernels.push_back({PredictFour, SumFour, MultiplyFour, ExpectFour});
#endif
    kernels.push_back({PredictTwo, SumTwo, MultiplyTwo, ExpectTwo});
    return kernels;
}

} // namespace

std::span<const CaseKernels> UsableCaseKernels() {
    static const std::vector<CaseKernels> kernels = Usable();
    return kernels;
}

} // namespace ozm::survival
