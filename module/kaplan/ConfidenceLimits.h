#pragma once

#include "module/kaplan/ProductLimit.h"

#include <span>

namespace ozm::survival {

struct ConfidenceLimits {
    double lower = 0.0;
    double upper = 0.0;
};

/// Pointwise log-minus-log limits of a survival estimate (Kalbfleisch & Prentice 1980, section 1.3):
///
///   S^exp(z SE / (S |ln S|)) and S^exp(-z SE / (S |ln S|))
///
/// They stay inside 0..1. Both are NaN where the estimate is not strictly between 0 and 1. `z` at least 0;
/// infinite for a level of 1, which gives 0 and 1.
double LogMinusLogLimit(double survival, double standardError, double z); ///< the upper one for a negative z
ConfidenceLimits LogMinusLogLimits(double survival, double standardError, double z);

struct PercentileLimits {
    Percentiles lower;
    Percentiles upper;
};

/// Limits of the percentiles: the times at which the lower and the upper limits of the curve reach the same
/// survival, by the percentiles' own rule (after Brookmeyer & Crowley 1982, Biometrics 38:29-41). All spans
/// equally long.
PercentileLimits ComputePercentileLimits(std::span<const double> times, std::span<const double> survival,
                                         std::span<const double> standardError, double z);

} // namespace ozm::survival
