#include "module/regression/parametric/ParametricDiagnosis.h"

#include "module/regression/estimation/Dependence.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <span>

namespace ozm::survival {

namespace {

constexpr double leastOfACase = 1e-13; // that counts, on the standardised scale

double Standardised(const RegressionSample& sample, std::size_t k, std::size_t i) {
    const CovariateSummary& of = sample.Summary(k);
    return (sample.Column(k)[i] - of.mean) / of.deviation;
}

/// Products of standardised covariates, less their means among these cases.
SquareMatrix ProductsOf(const RegressionSample& sample, bool uncensoredOnly) {
    std::vector<std::vector<double>> columns(sample.Covariates());
    for (std::size_t k = 0; k < columns.size(); ++k) {
        double sum = 0.0;
        for (std::size_t i = 0; i < sample.Cases(); ++i)
            if (!uncensoredOnly || sample.Complete()[i] != 0) {
                columns[k].push_back(Standardised(sample, k, i));
                sum += columns[k].back();
            }
        const double mean = sum / static_cast<double>(columns[k].size());
        for (double& value : columns[k])
            value -= mean;
    }
    SquareMatrix products;
    for (std::size_t k = 0; k < columns.size(); ++k)
        for (std::size_t l = 0; l <= k; ++l)
            for (std::size_t i = 0; i < columns[k].size(); ++i)
                products(k, l) += columns[k][i] * columns[l][i];
    return products;
}

/// Whether a combination that has one value in all uncensored cases has it as its least, or its greatest.
bool IsOneSided(const RegressionSample& sample, const Diagnosis::Dependence& combination) {
    constexpr double rounding = 1e-8;
    std::vector<double> values;
    double ofEvents = 0.0;
    double widest = 0.0;
    for (std::size_t i = 0; i < sample.Cases(); ++i) {
        double value = Standardised(sample, combination.covariate, i);
        for (std::size_t j = 0; j < combination.on.size(); ++j)
            value -= combination.weights[j] * Standardised(sample, combination.on[j], i);
        values.push_back(value);
        ofEvents += sample.Complete()[i] != 0 ? value / sample.Events() : 0.0;
        widest = std::max(widest, std::abs(value));
    }
    const auto [least, greatest] = std::ranges::minmax(values);
    const double tolerance = rounding * widest;
    const bool below = least < ofEvents - tolerance;
    const bool above = greatest > ofEvents + tolerance;
    return below != above;
}

} // namespace

std::optional<Diagnosis::Dependence> FindLinearDependence(const RegressionSample& sample,
                                                          bool uncensoredOnly) {
    const auto cases =
        uncensoredOnly ? static_cast<double>(sample.Events()) : static_cast<double>(sample.Cases());
    return DependenceIn(ProductsOf(sample, uncensoredOnly), sample.Covariates(), leastOfACase * cases);
}

std::vector<std::size_t> FindCombinationUnboundedByCensoring(const RegressionSample& sample) {
    const SquareMatrix all = ProductsOf(sample, true);
    std::vector<std::size_t> included(sample.Covariates());
    std::iota(included.begin(), included.end(), 0U);
    for (;;) {
        SquareMatrix products;
        for (std::size_t k = 0; k < included.size(); ++k)
            for (std::size_t l = 0; l <= k; ++l)
                products(k, l) = all(included[k], included[l]);
        const auto found = DependenceIn(products, included.size(), leastOfACase * sample.Events());
        if (!found) return {};
        Diagnosis::Dependence combination{included[found->covariate], {}, found->weights};
        for (const std::size_t j : found->on)
            combination.on.push_back(included[j]);
        included.erase(included.begin() + static_cast<std::ptrdiff_t>(found->covariate));
        if (combination.on.empty() || !IsOneSided(sample, combination)) continue;
        std::vector<std::size_t> together = combination.on;
        together.push_back(combination.covariate);
        std::ranges::sort(together);
        return together;
    }
}

std::vector<UnboundedByCensoring> FindUnboundedByCensoring(const RegressionSample& sample) {
    std::vector<UnboundedByCensoring> unbounded;
    for (std::size_t k = 0; k < sample.Covariates(); ++k) {
        const std::span<const double> x = sample.Column(k);
        const auto [least, greatest] = std::ranges::minmax(x);
        std::optional<double> value;
        bool isOne = least < greatest;
        for (std::size_t i = 0; i < x.size() && isOne; ++i) {
            if (sample.Complete()[i] == 0) continue;
            isOne = value.value_or(x[i]) == x[i];
            value = x[i];
        }
        if (isOne && value && (*value == least || *value == greatest))
            unbounded.push_back({k, *value, *value == least});
    }
    return unbounded;
}

std::optional<std::size_t> FindNearlyConstant(const RegressionSample& sample, double below) {
    double least = below;
    std::optional<std::size_t> found;
    for (std::size_t k = 0; k < sample.Covariates(); ++k) {
        const double variation = sample.Summary(k).deviation / std::abs(sample.Summary(k).mean);
        if (!(variation < least)) continue;
        least = variation;
        found = k;
    }
    return found;
}

} // namespace ozm::survival
