#include "module/survdata/NormalTail.h"

#include <cmath>

namespace ozm::survival {
namespace {

constexpr double centreEnds = 1.28;
constexpr double lowerTailIsOne = 7.0;
constexpr double upperTailIsZero = 18.66;

/// z in 0..1.28: 1/2 less the area from 0 to z.
double Centre(double z) {
    const double y = 0.5 * z * z;
    const double fraction =
        y + 5.75885480458 - 29.8213557808 / (y + 2.62433121679 + 48.6959930692 / (y + 5.92885724438));
    // 0.399903438504 is as Hill prints it. Copies that lost the 3 before the 8 are wrong in the 7th digit.
    return 0.5 - z * (0.398942280444 - 0.399903438504 * y / fraction);
}

/// z above 1.28: the density over a continued fraction.
double Beyond(double z) {
    double fraction = z + 3.99019417011;
    fraction = z + 0.742380924027 + 30.789933034 / fraction;
    fraction = z + 4.8385912808 - 15.1508972451 / fraction;
    fraction = z - 0.151679116635 + 5.29330324926 / fraction;
    fraction = z + 3.98064794e-4 + 1.98615381364 / fraction;
    fraction = z - 3.8052e-8 + 1.00000615302 / fraction;
    return 0.398942280385 * std::exp(-0.5 * z * z) / fraction;
}

} // namespace

double NormalTailProbability(double z) {
    if (std::isnan(z)) return z;
    if (z > upperTailIsZero) return 0.0;
    if (z < -lowerTailIsOne) return 1.0;
    const double size = std::abs(z);
    const double tail = size <= centreEnds ? Centre(size) : Beyond(size);
    return z < 0.0 ? 1.0 - tail : tail;
}

double TwoSidedProbability(double z) {
    return 2.0 * NormalTailProbability(std::abs(z));
}

} // namespace ozm::survival
