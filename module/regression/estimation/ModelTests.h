#pragma once

#include "module/regression/estimation/DampedNewton.h"

#include <span>

namespace ozm::survival {

/// A chi-square statistic with its degrees of freedom; NaN and p NaN where it cannot be computed.
struct ChiSquareStatistic {
    double value = 0.0;
    int df = 1;
    double p = 1.0;
};
ChiSquareStatistic ChiSquareOf(double value, int df);

/// The three tests of all parameters being 0.
struct ModelTests {
    ChiSquareStatistic likelihoodRatio; ///< 2 (L - L0)
    ChiSquareStatistic score;           ///< U'I^-1 U at 0
    ChiSquareStatistic wald;            ///< b'V^-1 b; NaN where V is singular
};
ModelTests TestModel(std::span<const double> estimates, const NewtonEstimate& estimate);

} // namespace ozm::survival
