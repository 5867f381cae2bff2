#pragma once

#include "module/regression/data/RegressionSample.h"
#include "module/regression/estimation/SquareMatrix.h"

#include <span>

namespace ozm::survival {

/// At estimates of the normal model (coefficients, constant, sigma) of a sample with these responses: the
/// gradient of the log-likelihood, and the inverse of the observed information. They are computed on the
/// scale of standardised covariates, where large common parts of their values do no harm, and carried back.
/// False where the information has no inverse. Throws std::bad_alloc without memory for a copy of the
/// covariates.
bool NormalInformation(const RegressionSample& sample, std::span<const double> y,
                       std::span<const double> parameters, ParameterVector& gradient,
                       SquareMatrix& covariance);

} // namespace ozm::survival
