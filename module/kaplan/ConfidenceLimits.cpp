#include "module/kaplan/ConfidenceLimits.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>

namespace ozm::survival {

ConfidenceLimits LogMinusLogLimits(double survival, double standardError, double z) {
    if (!(survival > 0.0 && survival < 1.0)) {
        constexpr double undefined = std::numeric_limits<double>::quiet_NaN();
        return {undefined, undefined};
    }
    const double logSurvival = std::log(survival);
    const double width = z * standardError / (survival * -logSurvival);
    return {std::exp(logSurvival * std::exp(width)), std::exp(logSurvival * std::exp(-width))};
}

PercentileLimits ComputePercentileLimits(std::span<const double> times, std::span<const double> survival,
                                         std::span<const double> standardError, double z) {
    const auto limits = [&](std::size_t i) { return LogMinusLogLimits(survival[i], standardError[i], z); };
    return {LocatePercentiles(times, [&](std::size_t i) { return limits(i).lower; }),
            LocatePercentiles(times, [&](std::size_t i) { return limits(i).upper; })};
}

std::string LevelInPercent(double level) {
    std::array<char, 400> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), level * 100.0,
                                   std::chars_format::fixed, 2);
    std::string text{buffer.data(), end.ptr};
    while (text.ends_with('0'))
        text.pop_back();
    while (text.ends_with('.') || text.ends_with(','))
        text.pop_back();
    return text;
}

} // namespace ozm::survival
