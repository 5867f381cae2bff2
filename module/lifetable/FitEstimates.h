#pragma once

#include "module/lifetable/DistributionFits.h"

namespace ozm::survival {

/// An estimate with its confidence limits; NaN where there is none.
struct EstimateWithLimits {
    double value = DistributionFit::none;
    double error = DistributionFit::none; ///< standard error
    double lower = DistributionFit::none;
    double upper = DistributionFit::none;
};

/// The fitted survival at a time >= 0, by the delta method from the covariance of the parameters: the
/// standard error of S is S times that of the cumulative hazard; the limits are those of ln(-ln S), so that
/// they lie between 0 and 1. `z` is the normal quantile of the confidence level. At time 0 survival is 1
/// without error. NaN where the hazard is negative or survival above 1, as a linear hazard's may be.
EstimateWithLimits SurvivalWithLimits(Distribution family, const DistributionFit& fit, double time, double z);

/// The time at which the fitted survival has fallen to a proportion between 0 and 1, exclusive. Its standard
/// error is that of the cumulative hazard over the hazard there; the limits are those of the time's
/// logarithm. NaN where survival does not fall that far.
EstimateWithLimits TimeWithLimits(Distribution family, const DistributionFit& fit, double surviving,
                                  double z);

} // namespace ozm::survival
