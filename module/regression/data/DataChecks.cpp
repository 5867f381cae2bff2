#include "module/regression/data/DataChecks.h"

#include <algorithm>
#include <optional>

namespace ozm::survival {
namespace {

std::optional<std::size_t> CovariateWithFewValues(const RegressionResults& results) {
    for (std::size_t k = 0; k < results.missing.size(); ++k)
        if (ValidOtherwise(results) - results.missing[k] < 2) return k;
    return std::nullopt;
}

std::optional<std::size_t> ConstantCovariate(const RegressionSample& sample) {
    for (std::size_t k = 0; k < sample.Covariates(); ++k)
        if (!(sample.Summary(k).deviation > 0.0)) return k;
    return std::nullopt;
}

} // namespace

std::int32_t ValidOtherwise(const RegressionResults& results) {
    return results.reading.valid + results.reading.missingCovariate;
}

DataFault CheckRegressionData(const RegressionResults& results, RegressionStatus status,
                              bool parametersNeedEvents) {
    if (status == RegressionStatus::TooFewValid && ValidOtherwise(results) > 2)
        if (const auto few = CovariateWithFewValues(results)) return {RegressionStatus::FewValues, *few};
    if (status != RegressionStatus::Success) return {status};
    const RegressionSample& sample = results.sample;
    const std::int32_t events = sample.Events();
    if (events == 0) return {RegressionStatus::NoUncensored};
    if (events < 2) return {RegressionStatus::TooFewUncensored};
    if (const auto few = CovariateWithFewValues(results)) return {RegressionStatus::FewValues, *few};
    if (const auto constant = ConstantCovariate(sample))
        return {RegressionStatus::ConstantCovariate, *constant};
    if (std::ranges::all_of(sample.Times(), [&](double time) { return time == sample.Times().front(); }))
        return {RegressionStatus::ConstantTimes};
    if (parametersNeedEvents && static_cast<std::int64_t>(results.Parameters()) > events)
        return {RegressionStatus::TooManyParameters};
    return {};
}

} // namespace ozm::survival
