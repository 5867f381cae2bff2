#include "module/lifetable/Distributions.h"

#include <cmath>
#include <limits>

namespace ozm::survival {

double HazardAt(Distribution family, const DistributionParameters& of, double time) {
    switch (family) {
    case Distribution::Exponential:
        return of.lambda;
    case Distribution::LinearHazard:
        return of.lambda + of.gamma * time;
    case Distribution::Gompertz:
        return std::exp(of.lambda + of.gamma * time);
    case Distribution::Weibull:
        return std::exp((of.gamma - 1.0) * std::log(time) + std::log(of.lambda * of.gamma));
    }
    return std::numeric_limits<double>::quiet_NaN();
}

double CumulativeHazardAt(Distribution family, const DistributionParameters& of, double time) {
    switch (family) {
    case Distribution::Exponential:
        return of.lambda * time;
    case Distribution::LinearHazard:
        return (of.gamma * time / 2.0 + of.lambda) * time;
    case Distribution::Gompertz:
        if (of.gamma == 0.0) return std::exp(of.lambda) * time;
        return (std::exp(of.gamma * time) - 1.0) * std::exp(of.lambda) / of.gamma;
    case Distribution::Weibull:
        return of.lambda * std::pow(time, of.gamma);
    }
    return std::numeric_limits<double>::quiet_NaN();
}

double TimeOfSurvival(Distribution family, const DistributionParameters& of, double surviving) {
    const double wanted = -std::log(surviving); // of the cumulative hazard, > 0
    double time = std::numeric_limits<double>::quiet_NaN();
    switch (family) {
    case Distribution::Exponential:
        time = wanted / of.lambda;
        break;
    case Distribution::LinearHazard: {
        // The root of gamma t^2 / 2 + lambda t = wanted at which the hazard is not negative, in the form
        // without cancellation.
        const double root = std::sqrt(of.lambda * of.lambda + 2.0 * of.gamma * wanted);
        time = of.lambda >= 0.0 ? 2.0 * wanted / (of.lambda + root) : (root - of.lambda) / of.gamma;
        break;
    }
    case Distribution::Gompertz:
        time = of.gamma == 0.0 ? wanted / std::exp(of.lambda)
                               : std::log1p(of.gamma * wanted / std::exp(of.lambda)) / of.gamma;
        break;
    case Distribution::Weibull:
        time = std::pow(wanted / of.lambda, 1.0 / of.gamma);
        break;
    }
    return std::isfinite(time) && time >= 0.0 ? time : std::numeric_limits<double>::quiet_NaN();
}

} // namespace ozm::survival
