#include "module/regression/parametric/NormalHazard.h"

#include <cmath>
#include <numbers>

namespace ozm::survival {
namespace {

/// The integral of exp(-a t - t^2/2) from 0 to a length of which a + t changes by about 1 at most: Gauss's
/// formula with five points.
double ShortArea(double a, double length) {
    constexpr double inner = 0.53846931010568309;
    constexpr double outer = 0.90617984593866399;
    constexpr double innerWeight = 0.47862867049936647;
    constexpr double outerWeight = 0.23692688505618909;
    constexpr double centreWeight = 0.56888888888888889;
    const auto at = [&](double place) {
        const double t = 0.5 * length * (1.0 + place);
        return std::exp(-t * (a + 0.5 * t));
    };
    return 0.5 * length *
           (centreWeight * at(0.0) + innerWeight * (at(inner) + at(-inner)) +
            outerWeight * (at(outer) + at(-outer)));
}

constexpr double halfLogTwoPi = 0.91893853320467274;

/// The probability of a to b; some of it is below 0.
double Probability(double a, double b) {
    return 0.5 * (std::erfc(a / std::numbers::sqrt2) - std::erfc(b / std::numbers::sqrt2));
}

} // namespace

double NormalHazard(double z) {
    constexpr double asymptotic = 6.0;
    if (z > asymptotic) { // the continued fraction, of which the next term changes nothing
        double fraction = z;
        for (double term = 18.0; term > 0.0; --term)
            fraction = z + term / fraction;
        return fraction;
    }
    const double rootOfTwoOverPi = std::numbers::sqrt2 * std::numbers::inv_sqrtpi;
    return rootOfTwoOverPi * std::exp(-0.5 * z * z) / std::erfc(z / std::numbers::sqrt2);
}

NormalInterval::NormalInterval(double a, double b)
    : a_(a + b < 0.0 ? -b : a), b_(a + b < 0.0 ? -a : b), reflected_(a + b < 0.0) {
    const double length = b_ - a_;
    const double exponent = -0.5 * length * (a_ + b_);
    ratio_ = std::exp(exponent);
    if (length * (1.0 + b_) <= 1.0)
        area_ = ShortArea(a_, length);
    else if (a_ > 0.0)
        area_ = 1.0 / NormalHazard(a_) - ratio_ / NormalHazard(b_);
    else
        area_ = Probability(a_, b_) * std::exp(0.5 * a_ * a_ + halfLogTwoPi);
    mean_ = -std::expm1(exponent) / area_;
}

double NormalInterval::LogProbability() const {
    constexpr double coversMost = -5.0; // lest the area overflows
    return a_ < coversMost ? std::log(Probability(a_, b_)) : std::log(area_) - 0.5 * a_ * a_ - halfLogTwoPi;
}

} // namespace ozm::survival
