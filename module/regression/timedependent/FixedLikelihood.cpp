#include "module/regression/timedependent/FixedLikelihood.h"

#include "module/regression/timedependent/PredictorBounds.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace ozm::survival {
namespace {

std::vector<double> ValuesOf(const OrderedSample& sample, TimeCovariates& covariates) {
    std::vector<double> values(covariates.Count() * sample.cases);
    for (std::size_t k = 0; k < covariates.Count() && sample.cases > 0; ++k)
        covariates.Evaluate(k, 0, sample.times[0], std::span{values}.subspan(k * sample.cases, sample.cases));
    return values;
}

std::vector<double> Centred(std::vector<double> values, std::size_t cases) {
    for (std::size_t first = 0; first < values.size(); first += cases) {
        const std::span<double> column = std::span{values}.subspan(first, cases);
        const double mean = std::accumulate(column.begin(), column.end(), 0.0) / static_cast<double>(cases);
        for (double& each : column)
            each -= mean;
    }
    return values;
}

OrderedSample With(const OrderedSample& sample, std::size_t covariates, std::span<const double> x) {
    return {sample.cases, covariates, sample.cases, sample.times, sample.complete, x, sample.blocks};
}

/// The first case without a value, and its first covariate without one.
std::optional<ValueAt> MissingIn(const OrderedSample& sample, std::span<const double> values) {
    std::optional<ValueAt> missing;
    for (std::size_t at = 0; at < values.size(); ++at) {
        const std::size_t i = at % sample.cases;
        if (std::isfinite(values[at]) || (missing && missing->place <= i)) continue;
        missing = ValueAt{at / sample.cases, i, sample.times[i]};
    }
    return missing;
}

} // namespace

FixedLikelihood::FixedLikelihood(const OrderedSample& sample, TimeCovariates& covariates)
    : values_(ValuesOf(sample, covariates)), centred_(Centred(values_, sample.cases)),
      ordered_(With(sample, covariates.Count(), centred_)), missing_(MissingIn(sample, values_)),
      predictor_(sample.cases), likelihood_(ordered_) {}

double FixedLikelihood::NegligibleStep(std::size_t parameter) const {
    double largest = 0.0;
    for (std::size_t i = 0; i < predictor_.size(); ++i)
        largest = std::max(largest, std::abs(ordered_.Column(parameter)[i]));
    return NegligibleStepOf(largest);
}

EstimationStatus FixedLikelihood::Check(std::span<const double> parameters) {
    if (missing_) return EstimationStatus::InvalidOperation;
    std::ranges::fill(predictor_, 0.0);
    for (std::size_t k = 0; k < parameters.size(); ++k) {
        const double* const column = values_.data() + k * predictor_.size();
        for (std::size_t i = 0; i < predictor_.size(); ++i)
            predictor_[i] += column[i] * parameters[k];
    }
    beyond_.reset();
    const auto beyond =
        std::ranges::find_if(predictor_, [](double eta) { return !(std::abs(eta) <= largestTimePredictor); });
    if (beyond == predictor_.end()) return EstimationStatus::Success;
    const auto i = static_cast<std::size_t>(beyond - predictor_.begin());
    beyond_ = ValueAt{0, i, ordered_.times[i]};
    const auto part = [&](std::size_t k) {
        return std::abs(values_[k * predictor_.size() + i] * parameters[k]);
    };
    for (std::size_t k = 1; k < parameters.size(); ++k)
        if (part(k) > part(beyond_->covariate)) beyond_->covariate = k;
    return EstimationStatus::NoLikelihood;
}

EstimationStatus FixedLikelihood::LogLikelihood(std::span<const double> parameters, double& value) {
    const EstimationStatus status = Check(parameters);
    // Less their means, predictors within the bound are far within that of the fixed model.
    return status == EstimationStatus::Success ? likelihood_.LogLikelihood(parameters, value) : status;
}

void FixedLikelihood::Derivatives(std::span<double> gradient, SquareMatrix& information) {
    likelihood_.Derivatives(gradient, information);
}

void FixedLikelihood::Gradient(std::span<double> gradient) {
    likelihood_.Gradient(gradient);
}

} // namespace ozm::survival
