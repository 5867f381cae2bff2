#include "module/regression/parametric/CensoredNormal.h"

#include "module/regression/parametric/NormalHazard.h"
#include "module/survdata/NormalTail.h"

#include <algorithm>
#include <cmath>
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

} // namespace

double CensoredNormalLogLikelihood(const CensoredCases& cases, std::span<const double> parameters) {
    const std::vector<double> means = Means(cases, parameters);
    const double sigma = parameters[cases.covariates + 1];
    double sum = 0.0;
    for (std::size_t i = 0; i < means.size(); ++i) {
        const double z = (cases.y[i] - means[i]) / sigma;
        if (cases.status[i] == CensoredCases::complete)
            sum += -std::log(sigma) - z * z / 2.0 - logTwoPi / 2.0;
        else if (cases.status[i] == CensoredCases::confined)
            sum += std::max(std::log(leastProbability),
                            NormalInterval(z, (cases.upper[i] - means[i]) / sigma).LogProbability());
        else
            sum += std::log(std::max(leastProbability, NormalTailProbability(z)));
    }
    return sum;
}

void CensoredNormalDerivatives(const CensoredCases& cases, std::span<const double> parameters,
                               std::span<double> gradient, SquareMatrix& information) {
    const std::size_t q = cases.covariates;
    const std::size_t last = q + 1;
    const double sigma = parameters[last];
    const std::vector<double> means = Means(cases, parameters);
    std::ranges::fill(gradient, 0.0);
    information = {};
    std::vector<double> row(q + 1, 1.0);
    for (std::size_t i = 0; i < means.size(); ++i) {
        const double z = (cases.y[i] - means[i]) / sigma;
        // By the mean, twice by it, by it and sigma, by sigma, twice by it; times sigma or its square.
        double byMean = z;
        double twice = 1.0;
        double mixed = 2.0 * z;
        double bySigma = z * z - 1.0;
        double sigmaTwice = 3.0 * z * z - 1.0;
        if (cases.status[i] != CensoredCases::complete) {
            const double h = NormalHazard(z);
            const double slope = h * (h - z);
            byMean = h;
            twice = slope;
            mixed = slope * z + h;
            bySigma = h * z;
            sigmaTwice = slope * z * z + 2.0 * h * z;
        }
        for (std::size_t k = 0; k < q; ++k)
            row[k] = cases.Column(k)[i];
        for (std::size_t k = 0; k <= q; ++k) {
            gradient[k] += byMean * row[k] / sigma;
            for (std::size_t l = 0; l <= k; ++l)
                information(k, l) += twice * row[k] * row[l] / (sigma * sigma);
            information(last, k) += mixed * row[k] / (sigma * sigma);
        }
        gradient[last] += bySigma / sigma;
        information(last, last) += sigmaTwice / (sigma * sigma);
    }
    for (std::size_t k = 0; k <= last; ++k)
        for (std::size_t l = 0; l < k; ++l)
            information(l, k) = information(k, l);
}

} // namespace ozm::survival
