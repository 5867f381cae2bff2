#pragma once

#include "module/regression/estimation/SquareMatrix.h"
#include "module/regression/parametric/CensoredCases.h"

#include <optional>
#include <span>
#include <vector>

namespace ozm::survival {

/// Responses are normal about b0 + x'b with standard deviation sigma. Parameters are b, the constant b0,
/// sigma.
///
/// The log-likelihood: the sum over complete cases of -ln sigma - z^2/2 - ln(2 pi)/2, with
/// z = (y - b0 - x'b) / sigma; over censored ones of ln Q(z), Q the upper tail of the standard normal
/// distribution; over confined ones of the logarithm of the tails' difference. Q and differences count as
/// 1e-300 where they are less.
double CensoredNormalLogLikelihood(const CensoredCases& cases, std::span<const double> parameters);

/// Its derivatives by all parameters, without the floor: gradient, and the observed information, minus the
/// matrix of second derivatives. There are no confined cases.
struct NormalDerivatives {
    std::vector<double> gradient;
    SquareMatrix information;
};
NormalDerivatives DeriveCensoredNormal(const CensoredCases& cases, std::span<const double> parameters);

/// The gradient, and the inverse of the information, which does not suffer from common parts and units of the
/// covariates. None where it is singular.
struct NormalCovariance {
    std::vector<double> gradient;
    SquareMatrix covariance;
};
std::optional<NormalCovariance> CensoredNormalCovariance(const CensoredCases& cases,
                                                         std::span<const double> parameters);

} // namespace ozm::survival
