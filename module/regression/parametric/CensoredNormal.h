#pragma once

#include "module/regression/estimation/SquareMatrix.h"
#include "module/regression/parametric/CensoredCases.h"

#include <span>

namespace ozm::survival {

/// Responses are normal about b0 + x'b with standard deviation sigma. Parameters are b, the constant b0,
/// sigma.
///
/// The log-likelihood: the sum over complete cases of -ln sigma - z^2/2 - ln(2 pi)/2, with
/// z = (y - b0 - x'b) / sigma; over censored ones of ln Q(z), Q the upper tail of the standard normal
/// distribution; over confined ones of the logarithm of the tails' difference. Q and differences count as
/// 1e-300 where they are less.
double CensoredNormalLogLikelihood(const CensoredCases& cases, std::span<const double> parameters);

/// Its derivatives by all parameters: gradient, and minus the matrix of second derivatives. Exact also in the
/// far tail. There are no confined cases.
void CensoredNormalDerivatives(const CensoredCases& cases, std::span<const double> parameters,
                               std::span<double> gradient, SquareMatrix& information);

} // namespace ozm::survival
