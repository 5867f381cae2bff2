#include "module/survdata/FTail.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace ozm::survival {
namespace {

/// ln Gamma(z) less Stirling's (z - 1/2) ln z - z + ln(2 pi) / 2, for z >= 1/2: the recurrence
/// Gamma(z + 1) = z Gamma(z) carries z up to where four terms of the asymptotic series suffice.
double StirlingRemainder(double z) {
    double sum = 0.0;
    for (; z < 10.0; z += 1.0)
        sum += (z + 0.5) * std::log1p(1.0 / z) - 1.0;
    const double r = 1.0 / (z * z);
    return sum + (1.0 / 12 - r * (1.0 / 360 - r * (1.0 / 1260 - r / 1680))) / z;
}

/// ln(ratio), where ratio = 1 + excess; computed from whichever of the two keeps more digits.
double LogRatio(double ratio, double excess) {
    return std::abs(excess) < 0.5 ? std::log1p(excess) : std::log(ratio);
}

/// The arguments of the incomplete beta function: x + y = 1, and lambda = a y - b x >= 0.
struct BetaPoint {
    double a, b, x, y, lambda;
};

/// x^a y^b / B(a, b). With n = a + b, Stirling's formula leaves
/// sqrt(a b / (2 pi n)) (n x / a)^a (n y / b)^b times the remainders, and n x / a = 1 - lambda / a,
/// n y / b = 1 + lambda / b: nothing large cancels.
double BetaPower(const BetaPoint& p) {
    const double n = p.a + p.b;
    const double powers =
        p.a * LogRatio(n * p.x / p.a, -p.lambda / p.a) + p.b * LogRatio(n * p.y / p.b, p.lambda / p.b);
    const double remainders = StirlingRemainder(n) - StirlingRemainder(p.a) - StirlingRemainder(p.b);
    return std::sqrt(p.a / n * p.b / (2.0 * std::numbers::pi)) * std::exp(powers + remainders);
}

/// The regularized incomplete beta function I_x(a, b) by the continued fraction of DiDonato & Morris (1992,
/// ACM Transactions on Mathematical Software 18:360-373), x^a y^b / B(a, b) divided by
/// beta(0) + alpha(1) / (beta(1) + alpha(2) / (beta(2) + ...)), with
///
///   alpha(k) = (a + k - 1) (a + b + k - 1) k (b - k) x^2 / (a + 2k - 1)^2
///   beta(k)  = k + k (b - k) x / (a + 2k - 1) + (a + k) / (a + 2k + 1) (lambda + 1 + k (1 + y))
///
/// from the front by Lentz's method (1976, Applied Optics 15:668-671).
double IncompleteBeta(const BetaPoint& p) {
    const double power = BetaPower(p);
    if (power == 0.0) return 0.0;
    // The slowest are 32000 degrees of freedom and more in both places: 200 steps around f = 1.
    constexpr int mostSteps = 1000;
    constexpr double tiny = 1e-300;
    double fraction = p.a / (p.a + 1.0) * (p.lambda + 1.0);
    double c = fraction;
    double d = 0.0;
    for (int step = 1; step <= mostSteps; ++step) {
        const double k = step;
        const double odd = p.a + 2.0 * k - 1.0;
        const double alpha =
            (p.a + k - 1.0) / odd * p.x * ((p.a + p.b + k - 1.0) / odd * p.x) * k * (p.b - k);
        const double beta =
            k + k * (p.b - k) * p.x / odd + (p.a + k) / (odd + 2.0) * (p.lambda + 1.0 + k * (1.0 + p.y));
        d = beta + alpha * d;
        d = 1.0 / (d == 0.0 ? tiny : d);
        c = beta + alpha / c;
        if (c == 0.0) c = tiny;
        fraction *= c * d;
        if (std::abs(c * d - 1.0) < 1e-12) break;
    }
    return power / fraction;
}

} // namespace

float FTailProbability(float f, float numeratorDf, float denominatorDf) {
    if (!(f >= 0.0F && numeratorDf >= 1.0F && denominatorDf >= 1.0F)) return noProbability;
    if (f == 0.0F) return 1.0F;
    if (std::isinf(f)) return 0.0F;
    const double df1 = std::round(std::min(numeratorDf, std::numeric_limits<float>::max()));
    const double df2 = std::round(std::min(denominatorDf, mostDenominatorDf));
    const double scaled = df1 * static_cast<double>(f);
    const double w = df2 / (scaled + df2);
    const double complement = scaled / (scaled + df2); // 1 - w would lose the digits of a small one
    const double a = df2 / 2.0;
    const double b = df1 / 2.0;
    const double lambda = b * w * (static_cast<double>(f) - 1.0); // a (1 - w) - b w
    // Below 1 from the other tail: the fraction converges fast there, and the difference is never small.
    const double tail = lambda >= 0.0 ? IncompleteBeta({a, b, w, complement, lambda})
                                      : 1.0 - IncompleteBeta({b, a, complement, w, -lambda});
    return static_cast<float>(std::clamp(tail, 0.0, 1.0));
}

float ChiSquareTailProbability(float chiSquare, std::int16_t df) {
    if (df <= 0) return 1.0F;
    const auto numeratorDf = static_cast<float>(df);
    const float p = FTailProbability(chiSquare / numeratorDf, numeratorDf, mostDenominatorDf);
    return p == noProbability ? 1.0F : p;
}

} // namespace ozm::survival
