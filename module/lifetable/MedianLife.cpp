#include "module/lifetable/MedianLife.h"

#include <cmath>
#include <limits>

namespace ozm::survival {
namespace {

/// The closed interval in which survival falls to the target or below; it ends there at the latest.
std::size_t IntervalOfFall(const IntervalColumn& surviving, std::size_t last, double target) {
    for (std::size_t j = 1; j <= last; ++j)
        if (surviving[j - 1] >= target && target > surviving[j]) return j - 1;
    std::size_t j = last;
    while (j > 1 && !(surviving[j - 1] > surviving[j]))
        --j;
    return j - 1;
}

} // namespace

MedianLives ComputeMedianLives(const LifeTable& table) {
    MedianLives lives;
    const IntervalColumn& p = table.cumulativeSurviving;
    const std::size_t last = table.Closed();
    for (std::size_t i = 0; i < last; ++i) {
        const double target = p[i] / 2.0;
        if (p[last] > target) {
            lives.median[i] = table.lower[last] - table.lower[i];
            lives.beyond.set(i);
            continue;
        }
        const std::size_t j = IntervalOfFall(p, last, target);
        lives.median[i] =
            table.lower[j] - table.lower[i] + table.width[j] * (p[j] - target) / (p[j] - p[j + 1]);
        const double density = table.density[j];
        lives.error[i] = density > 0.0 && table.exposed[i] > 0.0
                             ? std::sqrt(p[i] * p[i] / (4.0 * table.exposed[i] * (density * density)))
                             : std::numeric_limits<double>::quiet_NaN();
    }
    return lives;
}

} // namespace ozm::survival
