#include "module/kaplan/ConfidenceLimits.h"

#include <cmath>
#include <cstddef>
#include <limits>

namespace ozm::survival {

double LogMinusLogLimit(double survival, double standardError, double z) {
    if (!(survival > 0.0 && survival < 1.0)) return std::numeric_limits<double>::quiet_NaN();
    const double logSurvival = std::log(survival);
    return std::exp(logSurvival * std::exp(z * standardError / (survival * -logSurvival)));
}

ConfidenceLimits LogMinusLogLimits(double survival, double standardError, double z) {
    return {LogMinusLogLimit(survival, standardError, z), LogMinusLogLimit(survival, standardError, -z)};
}

PercentileLimits ComputePercentileLimits(std::span<const double> times, std::span<const double> survival,
                                         std::span<const double> standardError, double z) {
    // Most of a long curve lies far from every target; two bounds without logarithms skip it. With L = -ln S
    // and w = z SE / (S L), the lower limit is S exp(-L (e^w - 1)) >= S (1 - L (e^w - 1)) >= S - 1.01 z SE
    // for w <= 0.01, where L >= 1 - S gives w <= z SE / (S (1 - S)). The upper limit is never below S.
    const auto lowerIsAbove = [&](std::size_t i, double p) {
        const double width = z * standardError[i];
        return width <= 0.01 * survival[i] * (1.0 - survival[i]) &&
               survival[i] - 1.01 * width > p * (1.0 + 1e-12);
    };
    const auto upperIsAbove = [&](std::size_t i, double p) { return survival[i] > p * (1.0 + 1e-12); };
    const auto lower = [&](std::size_t i) { return LogMinusLogLimit(survival[i], standardError[i], z); };
    const auto upper = [&](std::size_t i) { return LogMinusLogLimit(survival[i], standardError[i], -z); };
    return {LocatePercentiles(times, lower, lowerIsAbove), LocatePercentiles(times, upper, upperIsAbove)};
}

} // namespace ozm::survival
