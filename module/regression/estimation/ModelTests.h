#pragma once

#include "module/regression/estimation/DampedNewton.h"

#include <cstddef>
#include <span>
#include <vector>

namespace ozm::survival {

/// A chi-square statistic with its degrees of freedom; NaN and p NaN where it cannot be computed.
struct ChiSquareStatistic {
    double value = 0.0;
    int df = 1;
    double p = 1.0;
};
ChiSquareStatistic ChiSquareOf(double value, int df);

/// The three tests of parameters being 0.
struct ModelTests {
    ChiSquareStatistic likelihoodRatio; ///< 2 (L - L0)
    ChiSquareStatistic score;           ///< U'I^-1 U at 0
    ChiSquareStatistic wald;            ///< b'V^-1 b; NaN where V is singular
};
/// The parameters are the first of the estimate.
ModelTests TestModel(std::span<const double> estimates, const NewtonEstimate& estimate);

/// The parameters that are not at the maximum to three digits: a Newton step from there, the covariance times
/// the gradient, changes them by more than 0.0005 of themselves, or of their standard errors if these are
/// larger.
std::vector<std::size_t> ParametersOffTheMaximum(std::span<const double> estimates,
                                                 const NewtonEstimate& estimate);

} // namespace ozm::survival
