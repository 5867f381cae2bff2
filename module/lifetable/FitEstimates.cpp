#include "module/lifetable/FitEstimates.h"

#include <cmath>

namespace ozm::survival {
namespace {

/// The derivatives of the cumulative hazard at a time by the parameters.
struct Gradient {
    double byLambda = 0.0;
    double byGamma = 0.0;
};

Gradient GradientOf(Distribution family, const DistributionParameters& of, double t) {
    switch (family) {
    case Distribution::Exponential:
        return {t, 0.0};
    case Distribution::LinearHazard:
        return {t, t * t / 2.0};
    case Distribution::Gompertz: {
        const double cumulative = CumulativeHazardAt(family, of, t);
        const double scale = std::exp(of.lambda);
        if (of.gamma == 0.0) return {cumulative, scale * t * t / 2.0};
        return {cumulative, (scale * t * std::exp(of.gamma * t) - cumulative) / of.gamma};
    }
    case Distribution::Weibull: {
        const double power = std::pow(t, of.gamma);
        return {power, t > 0.0 ? of.lambda * power * std::log(t) : 0.0};
    }
    }
    return {};
}

/// The standard error of the cumulative hazard.
double ErrorAt(Distribution family, const DistributionFit& fit, double t) {
    const Gradient g = GradientOf(family, fit.parameters, t);
    double variance = g.byLambda * g.byLambda * fit.lambdaVariance;
    if (ParameterCount(family) == 2)
        variance += g.byGamma * g.byGamma * fit.gammaVariance + 2.0 * g.byLambda * g.byGamma * fit.covariance;
    return variance >= 0.0 ? std::sqrt(variance) : DistributionFit::none;
}

} // namespace

EstimateWithLimits SurvivalWithLimits(Distribution family, const DistributionFit& fit, double time,
                                      double z) {
    const double cumulative = CumulativeHazardAt(family, fit.parameters, time);
    EstimateWithLimits estimate;
    estimate.value = std::exp(-cumulative);
    if (time == 0.0) {
        estimate = {1.0, 0.0, 1.0, 1.0};
        return estimate;
    }
    const double error = ErrorAt(family, fit, time);
    estimate.error = estimate.value * error;
    if (!(cumulative > 0.0)) return estimate;
    const double factor = std::exp(z * error / cumulative);
    estimate.lower = std::exp(-cumulative * factor);
    estimate.upper = std::exp(-cumulative / factor);
    return estimate;
}

EstimateWithLimits TimeWithLimits(Distribution family, const DistributionFit& fit, double surviving,
                                  double z) {
    EstimateWithLimits estimate;
    estimate.value = TimeOfSurvival(family, fit.parameters, surviving);
    if (std::isnan(estimate.value)) return estimate;
    estimate.error = ErrorAt(family, fit, estimate.value) / HazardAt(family, fit.parameters, estimate.value);
    const double factor = std::exp(z * estimate.error / estimate.value);
    estimate.lower = estimate.value / factor;
    estimate.upper = estimate.value * factor;
    return estimate;
}

} // namespace ozm::survival
