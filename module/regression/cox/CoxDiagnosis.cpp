#include "module/regression/cox/CoxDiagnosis.h"

#include "module/regression/cox/PartialLikelihood.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace ozm::survival {
namespace {

/// By how much, at most, a value among those who die is below the largest among those at risk with them; and
/// whether any such group has different values at all.
struct Shortfall {
    double most = 0.0;
    bool varies = false;
};

template <class Value>
Shortfall LargestShortfall(const OrderedSample& sample, Value value) {
    Shortfall result;
    std::size_t i = 0;
    for (const std::int32_t size : sample.blocks) {
        const std::size_t end = i + static_cast<std::size_t>(size);
        double least = std::numeric_limits<double>::infinity();
        double largest = -least;
        while (i < end) {
            std::size_t next = i;
            for (; next < end && sample.times[next] == sample.times[i]; ++next) {
                least = std::min(least, value(next));
                largest = std::max(largest, value(next));
            }
            for (; i < next; ++i) {
                if (sample.complete[i] == 0) continue;
                result.most = std::max(result.most, largest - value(i));
                result.varies = result.varies || least < largest;
            }
        }
    }
    return result;
}

bool IsMonotone(const OrderedSample& sample, std::size_t k, double sign) {
    const double* const x = sample.Column(k);
    const Shortfall shortfall = LargestShortfall(sample, [&](std::size_t i) { return sign * x[i]; });
    return shortfall.varies && shortfall.most == 0.0;
}

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

std::vector<Diagnosis::Unbounded> FindUnbounded(const RegressionSample& sample) {
    std::vector<Diagnosis::Unbounded> unbounded;
    const OrderedSample ordered = sample.Ordered();
    for (std::size_t k = 0; k < ordered.covariates; ++k)
        for (const double sign : {1.0, -1.0})
            if (IsMonotone(ordered, k, sign)) unbounded.push_back({k, sign > 0.0});
    return unbounded;
}

std::vector<std::size_t> FindUnboundedTogether(const RegressionSample& sample,
                                               std::span<const double> parameters) {
    constexpr double farOut = 20.0; // a hazard ratio of 5e8 between cases
    // What bounded parts of the parameters add, beside those that run out.
    constexpr double tolerance = 0.2;
    constexpr double considerable = 0.05;
    std::vector<double> predictor(sample.Cases(), 0.0);
    std::vector<double> parts;
    for (std::size_t k = 0; k < parameters.size(); ++k) {
        const CovariateSummary& of = sample.Summary(k);
        parts.push_back(std::abs(parameters[k] * of.deviation));
        for (std::size_t i = 0; i < predictor.size(); ++i)
            predictor[i] += (sample.Column(k)[i] - of.mean) * parameters[k];
    }
    const auto [least, largest] = std::ranges::minmax(predictor);
    const double range = largest - least;
    const Shortfall shortfall =
        LargestShortfall(sample.Ordered(), [&](std::size_t i) { return predictor[i]; });
    std::vector<std::size_t> together;
    if (!(range > farOut) || !shortfall.varies || shortfall.most > tolerance * range) return together;
    const double most = *std::ranges::max_element(parts);
    for (std::size_t k = 0; k < parts.size(); ++k)
        if (parts[k] >= considerable * most) together.push_back(k);
    return together;
}

std::optional<Diagnosis::Dependence> FindDependence(const RegressionSample& sample) {
    constexpr double leastPivot = 1e-10;
    const std::size_t n = sample.Cases();
    const std::size_t p = sample.Covariates();
    std::vector<double> standardised(n * p);
    for (std::size_t k = 0; k < p; ++k)
        for (std::size_t i = 0; i < n; ++i)
            standardised[k * n + i] =
                (sample.Column(k)[i] - sample.Summary(k).mean) / sample.Summary(k).deviation;
    OrderedSample ordered = sample.Ordered();
    ordered.stride = n;
    ordered.x = standardised;
    PartialLikelihood likelihood(ordered);
    const ParameterVector zeros{};
    double value = 0.0;
    if (likelihood.LogLikelihood(std::span{zeros}.first(p), value) != EstimationStatus::Success)
        return std::nullopt;
    ParameterVector gradient{};
    SquareMatrix information;
    likelihood.Derivatives(std::span{gradient}.first(p), information);
    // By Cholesky's factors, row by row.
    SquareMatrix factor;
    for (std::size_t k = 0; k < p; ++k) {
        double pivot = information(k, k);
        for (std::size_t j = 0; j < k; ++j) {
            double sum = information(k, j);
            for (std::size_t l = 0; l < j; ++l)
                sum -= factor(k, l) * factor(j, l);
            factor(k, j) = sum / factor(j, j);
            pivot -= factor(k, j) * factor(k, j);
        }
        if (!(pivot > leastPivot * information(k, k))) return Diagnosis::Dependence{k, DependsOn(factor, k)};
        factor(k, k) = std::sqrt(pivot);
    }
    return std::nullopt;
}

} // namespace ozm::survival
