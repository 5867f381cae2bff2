#pragma once

namespace ozm::survival {

/// The upper tail of the chi-square distribution, P(X > x), with a whole number of degrees of freedom: the
/// finite series (Abramowitz & Stegun 26.4.4 and 26.4.5), with h = x / 2,
///
///   df even: e^-h (1 + h + h^2 / 2! + ... + h^(df/2 - 1) / (df/2 - 1)!)
///   df odd:  2 (1 - Phi(sqrt x)) + e^-h (h^(1/2) / Gamma(3/2) + h^(3/2) / Gamma(5/2) + ...)
///
/// to about fourteen digits, down to the smallest double. 1 for x <= 0 or df < 1, NaN for NaN.
double ChiSquareUpperTail(double x, int df);

/// The same series with another normal tail 1 - Phi and another value of Gamma(3/2) = sqrt(pi) / 2.
double ChiSquareSeries(double x, int df, double (*normalTail)(double), double gammaOfThreeHalves);

/// The upper tail of the standard normal distribution to double precision.
double NormalUpperTail(double z);

} // namespace ozm::survival
