#include "module/lifetable/FitEstimates.h"

#include <cmath>

namespace ozm::survival {
namespace {

/// The integral of e^(x u) over u from 0 to 1: (e^x - 1) / x.
double MeanOfExp(double x) {
    return x == 0.0 ? 1.0 : std::expm1(x) / x;
}

/// The integral of u e^(x u) over u from 0 to 1: (x e^x - (e^x - 1)) / x^2, near 0 by its series, as the
/// difference cancels there.
double MeanOfWeightedExp(double x) {
    if (std::abs(x) > 0.1) return (x * std::exp(x) - std::expm1(x)) / (x * x);
    double sum = 0.0;
    double term = 1.0;
    for (int k = 0; k < 10; ++k) {
        sum += term / (k + 2);
        term *= x / (k + 1);
    }
    return sum;
}

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
        const double x = of.gamma * t;
        const double scaled = std::exp(of.lambda) * t;
        return {scaled * MeanOfExp(x), scaled * t * MeanOfWeightedExp(x)};
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
    if (time == 0.0) return {1.0, 0.0, 1.0, 1.0};
    EstimateWithLimits estimate;
    const double cumulative = CumulativeHazardAt(family, fit.parameters, time);
    if (cumulative < 0.0 || HazardAt(family, fit.parameters, time) < 0.0) return estimate;
    estimate.value = std::exp(-cumulative);
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
