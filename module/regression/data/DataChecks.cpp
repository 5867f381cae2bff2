#include "module/regression/data/DataChecks.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace ozm::survival {
namespace {

std::optional<std::size_t> CovariateWithFewValues(const RegressionResults& results) {
    for (std::size_t k = 0; k < results.missing.size(); ++k)
        if (ValidOtherwise(results) - results.missing[k] < 2) return k;
    return std::nullopt;
}

/// Squares of the values, and what is divided by them, must be numbers.
constexpr double largestValue = 1e140;
constexpr double leastRange = 1e-140;

/// The first covariate that is constant, or on a scale that cannot be computed with.
std::optional<DataFault> UnusableCovariate(const RegressionSample& sample) {
    for (std::size_t k = 0; k < sample.Covariates(); ++k) {
        const auto [least, largest] = std::ranges::minmax(sample.Column(k));
        if (least == largest) return DataFault{RegressionStatus::ConstantCovariate, k};
        if (std::max(std::abs(least), std::abs(largest)) > largestValue || largest - least < leastRange)
            return DataFault{RegressionStatus::BadScale, k};
    }
    return std::nullopt;
}

} // namespace

std::int32_t ValidOtherwise(const RegressionResults& results) {
    return results.reading.valid + results.reading.missingCovariate;
}

DataFault CheckRegressionData(const RegressionResults& results, RegressionStatus status) {
    if (status == RegressionStatus::TooFewValid && ValidOtherwise(results) > 2)
        if (const auto few = CovariateWithFewValues(results)) return {RegressionStatus::FewValues, *few};
    if (status != RegressionStatus::Success) return {status};
    const RegressionSample& sample = results.sample;
    const std::int32_t events = sample.Events();
    if (events == 0) return {RegressionStatus::NoUncensored};
    if (events < 2) return {RegressionStatus::TooFewUncensored};
    if (const auto few = CovariateWithFewValues(results)) return {RegressionStatus::FewValues, *few};
    if (results.kind != RegressionKind::TimeDependent)
        if (const auto unusable = UnusableCovariate(sample)) return *unusable;
    if (std::ranges::all_of(sample.Times(), [&](double time) { return time == sample.Times().front(); }))
        return {RegressionStatus::ConstantTimes};
    return {};
}

} // namespace ozm::survival
