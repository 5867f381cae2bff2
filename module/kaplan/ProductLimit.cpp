#include "module/kaplan/ProductLimit.h"

#include <cmath>

namespace ozm::survival {

void ComputeProductLimit(std::span<const double> uncensored, std::span<const double> censored,
                         std::span<std::int32_t> ranks, std::span<double> survival,
                         std::span<double> standardError) {
    const auto observations = static_cast<double>(uncensored.size() + censored.size());
    std::size_t censoredBefore = 0;
    double s = 1.0;
    double greenwood = 0.0;
    for (std::size_t i = 0; i < uncensored.size(); ++i) {
        while (censoredBefore < censored.size() && censored[censoredBefore] < uncensored[i])
            ++censoredBefore;
        const std::size_t rank = i + 1 + censoredBefore;
        const double stillAtRisk = observations - static_cast<double>(rank);
        ranks[i] = static_cast<std::int32_t>(rank);
        // From left to right: another order rounds differently, and may then miss a percentile.
        s = s * stillAtRisk / (stillAtRisk + 1.0);
        survival[i] = s;
        if (stillAtRisk > 0.0) {
            greenwood += 1.0 / (stillAtRisk * (stillAtRisk + 1.0));
            standardError[i] = std::sqrt(s * s * greenwood);
        } else {
            standardError[i] = 0.0;
        }
    }
}

Percentiles ComputeSurvivalPercentiles(std::span<const double> times, std::span<const double> survival) {
    return LocatePercentiles(
        times, [&](std::size_t i) { return survival[i]; }, [](std::size_t, double) { return false; });
}

} // namespace ozm::survival
