#pragma once

#include "module/lifetable/DistributionFits.h"

namespace ozm::survival {

/// Whether the regressions' dependent values of a closed interval, its hazard and the hazard's logarithm,
/// have variances above 0, or none that is a number.
bool HasVariances(const LifeTable& table, std::size_t interval);

/// Estimates a distribution's parameters with their variances and covariance from the hazards H of the closed
/// intervals, whose variances are V, by least squares with weights w. With X the design, W = diag(w) and
/// B = (X'WX)^-1 X'W, the coefficients are B y and their covariance is B diag(V) B'. Every interval has
/// variances. Returns why it stops, if it does (a Weibull distribution out of range); `fit` is then as it
/// was.
///
///   exponential    y = H         on 1          lambda = the weighted mean of H
///   linear hazard  y = H         on 1, M       lambda = intercept, gamma = slope
///   Gompertz       y = ln H      on 1, M       lambda = intercept, gamma = slope
///   Weibull        y = ln H      on 1, ln M    gamma = 1 + slope, lambda = e^intercept / gamma
///
/// The variances of a Weibull distribution's parameters are those of the delta method.
FitStop EstimateParameters(const LifeTable& table, Distribution family, std::size_t weighting,
                           DistributionFit& fit);

} // namespace ozm::survival
