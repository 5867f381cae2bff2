#include "module/regression/parametric/CaseSums.h"

#include "module/regression/estimation/CaseRows.h"
#include "module/regression/estimation/CrossProducts.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <numbers>

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

/// e to the power of x, at most 0, to the last digit or the one before it; as if x were -700 where it is
/// less. The library's function takes one number at a time.
template <std::size_t Lanes>
[[gnu::always_inline]] inline void Power(const Lane<Lanes>& x, Lane<Lanes>& result) {
    using Bits [[gnu::vector_size(Lanes * sizeof(double))]] = std::uint64_t;
    constexpr double shift = 0x1.8p52; // its sum with a number has the nearest integer in its last bits
    const Lane<Lanes> least = Lane<Lanes>{} - 700.0;
    const Lane<Lanes> exponent = x < least ? least : x;
    const Lane<Lanes> shifted = exponent * std::numbers::log2e + shift;
    const Lane<Lanes> twos = shifted - shift;
    const Lane<Lanes> r = (exponent - twos * 0x1.62e42feep-1) - twos * 0x1.a39ef35793c76p-33;
    Lane<Lanes> sum = r * (1.0 / 6227020800.0) + 1.0 / 479001600.0;
    for (const double term : {1.0 / 39916800.0, 1.0 / 3628800.0, 1.0 / 362880.0, 1.0 / 40320.0, 1.0 / 5040.0,
                              1.0 / 720.0, 1.0 / 120.0, 1.0 / 24.0, 1.0 / 6.0, 0.5, 1.0, 1.0})
        sum = sum * r + term;
    Bits bits;
    Bits scale;
    std::memcpy(&bits, &sum, sizeof(bits));
    std::memcpy(&scale, &shifted, sizeof(scale));
    bits += scale << 52U;
    std::memcpy(&result, &bits, sizeof(result));
}

/// The ratios of density and upper tail of a block, as `CaseKernels` describes them. Each is one quotient:
/// the continued fractions are those of polynomials n / m, and in the tail the density cancels.
template <std::size_t Lanes>
[[gnu::always_inline]] inline void TailRatios(const Eight& block, Eight& ratios) {
    constexpr double density = 0.39894228;
    constexpr double densityBeyond = 0.398942280385;
    for (std::size_t part = 0; part < 8; part += Lanes) {
        Lane<Lanes> z;
        std::memcpy(&z, block.values.data() + part, sizeof(z));
        const Lane<Lanes> size = z < 0.0 ? -z : z;
        const Lane<Lanes> y = 0.5 * z * z;
        Lane<Lanes> bell;
        Power<Lanes>(-y, bell);
        const Lane<Lanes> n1 = y + 5.92885724438;
        const Lane<Lanes> n2 = (y + 2.62433121679) * n1 + 48.6959930692;
        const Lane<Lanes> n3 = (y + 5.75885480458) * n2 - 29.8213557808 * n1;
        const Lane<Lanes> m1 = size + 3.99019417011;
        const Lane<Lanes> m2 = (size + 0.742380924027) * m1 + 30.789933034;
        const Lane<Lanes> m3 = (size + 4.8385912808) * m2 - 15.1508972451 * m1;
        const Lane<Lanes> m4 = (size - 0.151679116635) * m3 + 5.29330324926 * m2;
        const Lane<Lanes> m5 = (size + 3.98064794e-4) * m4 + 1.98615381364 * m3;
        const Lane<Lanes> m6 = (size - 3.8052e-8) * m5 + 1.00000615302 * m4;
        const Lane<Lanes> power = density * bell;
        Lane<Lanes> over = power * n3;
        Lane<Lanes> under = 0.5 * n3 - z * (0.398942280444 * n3 - 0.399903438504 * y * n2);
        over = z > 1.28 ? density * m6 : over;
        under = z > 1.28 ? densityBeyond * m5 : under;
        over = z > 18.66 ? z * z + 1.0 : over;
        under = z > 18.66 ? z : under;
        over = z < -1.28 ? power * m6 : over;
        under = z < -1.28 ? m6 - densityBeyond * bell * m5 : under;
        over = z < -7.0 ? power : over;
        under = z < -7.0 ? Lane<Lanes>{} + 1.0 : under;
        over /= under;
        std::memcpy(ratios.values.data() + part, &over, sizeof(over));
    }
}

template <std::size_t Lanes>
[[gnu::always_inline]] inline CensoredSums Expect(const CaseBlocks& cases, std::span<const Eight> y,
                                                  std::span<const double> coefficients, double sigma) {
    std::array<Eight, mostParameters> sums{};
    Eight squares{};
    Eight weights{};
    std::array<Eight, chunk> z{};
    std::array<Eight, chunk> ratios{};
    const double perSigma = 1.0 / sigma;
    for (std::size_t first = 0; first < cases.Blocks(); first += chunk) {
        const std::size_t count = std::min(chunk, cases.Blocks() - first);
        for (std::size_t b = 0; b < count; ++b) {
            PredictBlock<Lanes>(cases.Block(first + b), coefficients, z[b]);
            for (std::size_t l = 0; l < 8; ++l)
                z[b].values[l] = (y[first + b].values[l] - z[b].values[l]) * perSigma;
        }
        for (std::size_t b = 0; b < count; ++b)
            TailRatios<Lanes>(z[b], ratios[b]);
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
    __VA_ARGS__ void TailRatios##Name(std::span<const Eight> z, std::span<Eight> ratios) {                   \
        for (std::size_t b = 0; b < z.size(); ++b)                                                           \
            TailRatios<Lanes>(z[b], ratios[b]);                                                              \
    }                                                                                                        \
    __VA_ARGS__ CensoredSums Expect##Name(const CaseBlocks& cases, std::span<const Eight> y,                 \
                                          std::span<const double> coefficients, double sigma) {              \
        return Expect<Lanes>(cases, y, coefficients, sigma);                                                 \
    }                                                                                                        \
    constexpr CaseKernels kernels##Name{Predict##Name, Sum##Name, Multiply##Name, TailRatios##Name,          \
                                        Expect##Name};

KORVANA_KERNELS(Two, 2, )
#if defined(__x86_64__)
KORVANA_KERNELS(Four, 4, [[gnu::target("avx2")]])
KORVANA_KERNELS(Wide, 8, [[gnu::target("avx512f")]])
#endif

std::vector<CaseKernels> Usable() {
    std::vector<CaseKernels> kernels;
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx512f")) kernels.push_back(kernelsWide);
    if (__builtin_cpu_supports("avx2")) kernels.push_back(kernelsFour);
#endif
    kernels.push_back(kernelsTwo);
    return kernels;
}

} // namespace

std::span<const CaseKernels> UsableCaseKernels() {
    static const std::vector<CaseKernels> kernels = Usable();
    return kernels;
}

} // namespace ozm::survival
