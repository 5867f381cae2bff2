#include "module/regression/parametric/ParametricDiagnosis.h"

#include "module/regression/estimation/Dependence.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace ozm::survival {

std::optional<Diagnosis::Dependence> FindLinearDependence(const RegressionSample& sample,
                                                          bool uncensoredOnly) {
    // Covariates less their means among these cases, over their standard deviations among all.
    std::vector<std::vector<double>> columns(sample.Covariates());
    for (std::size_t k = 0; k < columns.size(); ++k) {
        const CovariateSummary& of = sample.Summary(k);
        double sum = 0.0;
        for (std::size_t i = 0; i < sample.Cases(); ++i)
            if (!uncensoredOnly || sample.Complete()[i] != 0) {
                columns[k].push_back((sample.Column(k)[i] - of.mean) / of.deviation);
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
    constexpr double least = 1e-13; // of a case
    return DependenceIn(products, columns.size(), least * static_cast<double>(columns.front().size()));
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

std::optional<std::size_t> FindNearlyConstant(const RegressionSample& sample) {
    constexpr double littleVariation = 0.01;
    double least = littleVariation;
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
