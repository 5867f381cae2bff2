#include "module/survdata/ChiSquareTail.h"

#include <cmath>
#include <numbers>

namespace ozm::survival {

double NormalUpperTail(double z) {
    return 0.5 * std::erfc(z / std::numbers::sqrt2);
}

double ChiSquareSeries(double x, int df, double (*normalTail)(double), double gammaOfThreeHalves) {
    const double h = x / 2.0;
    const bool odd = df % 2 == 1;
    // The sum overflows where e^-h underflows; what is taken out of it goes into the exponent.
    constexpr double large = 1e200;
    const double logOfLarge = 200.0 * std::numbers::ln10;
    double exponent = -h;
    double sum = 0.0;
    double term = odd ? std::sqrt(h) / gammaOfThreeHalves : 1.0;
    for (int j = 1; j <= df / 2; ++j) {
        sum += term;
        term *= odd ? 2.0 * h / (2.0 * j + 1.0) : h / j;
        if (term > large || sum > large) {
            term /= large;
            sum /= large;
            exponent += logOfLarge;
        }
    }
    const double half =
        std::exp(exponent / 2.0); // of which both halves are numbers where the whole may be too small
    const double series = half * sum * half;
    return odd ? 2.0 * normalTail(std::sqrt(x)) + series : series;
}

double ChiSquareUpperTail(double x, int df) {
    if (x <= 0.0 || df < 1) return 1.0;
    return ChiSquareSeries(x, df, NormalUpperTail, std::sqrt(std::numbers::pi) / 2.0);
}

} // namespace ozm::survival
