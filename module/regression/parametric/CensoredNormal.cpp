#include "module/regression/parametric/CensoredNormal.h"

#include "module/regression/estimation/PositiveInverse.h"
#include "module/regression/parametric/CaseSums.h"
#include "module/regression/parametric/NormalHazard.h"
#include "module/survdata/NormalTail.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace ozm::survival {
namespace {

constexpr double logTwoPi = 1.8378770664093445;
constexpr double leastProbability = 1e-300;

std::vector<double> Means(const CensoredCases& cases, std::span<const double> parameters) {
    std::vector<double> means(cases.Cases(), parameters[cases.covariates]);
    for (std::size_t k = 0; k < cases.covariates; ++k)
        for (std::size_t i = 0; i < means.size(); ++i)
            means[i] += parameters[k] * cases.Column(k)[i];
    return means;
}

/// By the coefficients of covariates on scales, the constant, and sigma.
NormalDerivatives Derive(const CensoredCases& cases, const CovariateScales& scales,
                         std::span<const double> coefficients, double sigma) {
    const CaseKernels& kernels = UsableCaseKernels().front();
    const std::size_t last = coefficients.size();
    const std::vector<std::uint32_t> places = AllPlaces(cases.Cases());
    const CaseBlocks blocks(cases, places, scales);
    // By the mean, the root of twice by it, by it and sigma; times sigma or its square.
    std::vector<Eight> byMean(blocks.Blocks());
    std::vector<Eight> root(blocks.Blocks());
    std::vector<Eight> mixed(blocks.Blocks());
    Eight bySigma{};
    Eight sigmaTwice{};
    kernels.predict(blocks, coefficients, byMean);
    for (std::size_t i = 0; i < cases.Cases(); ++i) {
        const std::size_t b = i / 8;
        const std::size_t l = i % 8;
        const double z = (cases.y[i] - byMean[b].values[l]) / sigma;
        const bool complete = cases.status[i] == CensoredCases::complete;
        const double h = complete ? z : NormalHazard(z);
        const double slope = complete ? 1.0 : std::max(h * (h - z), 0.0);
        byMean[b].values[l] = h;
        root[b].values[l] = std::sqrt(slope);
        mixed[b].values[l] = slope * z + h;
        bySigma.values[l] += complete ? z * z - 1.0 : h * z;
        sigmaTwice.values[l] += slope * z * z + 2.0 * h * z - (complete ? 1.0 : 0.0);
    }
    NormalDerivatives result{std::vector<double>(last + 1), {}};
    std::vector<double> column(last);
    kernels.sum(blocks, byMean, result.gradient);
    kernels.sum(blocks, mixed, column);
    kernels.multiply(blocks, root, result.information);
    result.gradient[last] = bySigma.Sum();
    for (double& each : result.gradient)
        each /= sigma;
    for (std::size_t k = 0; k < last; ++k)
        result.information(k, last) = result.information(last, k) = column[k];
    result.information(last, last) = sigmaTwice.Sum();
    for (std::size_t k = 0; k <= last; ++k)
        for (std::size_t l = 0; l <= last; ++l)
            result.information(k, l) /= sigma * sigma;
    return result;
}

} // namespace

double CensoredNormalLogLikelihood(const CensoredCases& cases, std::span<const double> parameters) {
    const std::vector<double> means = Means(cases, parameters);
    const double sigma = parameters[cases.covariates + 1];
    double sum = 0.0;
    for (std::size_t i = 0; i < means.size(); ++i) {
        const double z = (cases.y[i] - means[i]) / sigma;
        if (cases.IsComplete(i))
            sum += -std::log(sigma) - z * z / 2.0 - logTwoPi / 2.0;
        else if (cases.status[i] == CensoredCases::confined)
            sum += std::max(std::log(leastProbability),
                            NormalInterval(z, (cases.upper[i] - means[i]) / sigma).LogProbability());
        else
            sum += std::log(std::max(leastProbability, NormalTailProbability(z)));
    }
    return sum;
}

NormalDerivatives DeriveCensoredNormal(const CensoredCases& cases, std::span<const double> parameters) {
    return Derive(cases, CovariateScales::None(cases.covariates), parameters.first(cases.covariates + 1),
                  parameters[cases.covariates + 1]);
}

std::optional<NormalCovariance> CensoredNormalCovariance(const CensoredCases& cases,
                                                         std::span<const double> parameters) {
    const std::size_t q = cases.covariates;
    const std::size_t order = q + 2;
    const CovariateScales scales = CovariateScales::Standard(cases);
    NormalDerivatives there =
        Derive(cases, scales, scales.Inwards(parameters.first(q + 1)), parameters[q + 1]);
    const auto inverse = PositiveInverse(there.information, order);
    if (!inverse) return std::nullopt;
    NormalCovariance result{std::move(there.gradient), *inverse};
    SquareMatrix& v = result.covariance;
    // Outwards, rows and then columns: b = inside / scale, b0 = inside - sum of b centre.
    for (std::size_t l = 0; l < order; ++l)
        for (std::size_t k = 0; k < q; ++k) {
            v(k, l) /= scales.scale[k];
            v(q, l) -= v(k, l) * scales.centre[k];
        }
    for (std::size_t l = 0; l < order; ++l)
        for (std::size_t k = 0; k < q; ++k) {
            v(l, k) /= scales.scale[k];
            v(l, q) -= v(l, k) * scales.centre[k];
        }
    for (std::size_t k = 0; k < q; ++k)
        result.gradient[k] = result.gradient[k] * scales.scale[k] + result.gradient[q] * scales.centre[k];
    return result;
}

} // namespace ozm::survival
