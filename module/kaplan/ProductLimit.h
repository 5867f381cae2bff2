#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace ozm::survival {

/// The Kaplan-Meier (product-limit) estimate of the survival function (Kaplan & Meier 1958, JASA 53:457-481)
/// with Greenwood's standard error (Greenwood 1926), one row per uncensored observation:
///
///   r(i) = i + number of censored times strictly below t(i)
///   S(i) = S(i-1) (N - r(i)) / (N - r(i) + 1),                      S(0) = 1
///   SE(i) = S(i) sqrt(sum over k <= i of 1 / ((N - r(k)) (N - r(k) + 1)))
///
/// Tied uncensored times keep a row each; the last row of a tied run holds the textbook values. A censored
/// time that equals an uncensored one is still at risk there. When the last observation at risk fails, S and
/// SE are 0.
///
/// Input: both lists ascending, without NaN; N is their total length. Output: spans as long as `uncensored`.
void ComputeProductLimit(std::span<const double> uncensored, std::span<const double> censored,
                         std::span<std::int32_t> ranks, std::span<double> survival,
                         std::span<double> standardError);

/// Survival times at which an estimate falls to 0.75, 0.50 and 0.25: the 25th, 50th and 75th percentile. A
/// time that is not located is 0.
struct Percentiles {
    static constexpr std::array<double, 3> targets{0.75, 0.50, 0.25};
    std::array<double, 3> times{};
    std::array<bool, 3> located{};
};

/// Locates the percentiles by linear interpolation of time against survival between successive uncensored
/// observations. `times` ascending; survivalAt(i), i from 0, is the curve after observation i. Fewer than
/// four observations locate nothing. A target that the curve has passed at the position reached is not
/// located, and the next one is looked for from there. surelyAbove(i, p) may return true where the curve is
/// known to be above p without computing it: this saves time and changes no result.
template <class SurvivalAt, class SurelyAbove>
Percentiles LocatePercentiles(std::span<const double> times, SurvivalAt survivalAt, SurelyAbove surelyAbove) {
    Percentiles found;
    const std::size_t count = times.size();
    if (count < 4) return found;
    std::size_t j = 0;
    for (std::size_t target = 0; target < Percentiles::targets.size(); ++target) {
        const double p = Percentiles::targets[target];
        // Only at the position where the search begins: further on the curve was above p one step before.
        if (p > survivalAt(j)) continue;
        while (surelyAbove(j + 1, p) || !(survivalAt(j + 1) <= p))
            if (++j + 1 >= count) return found;
        const double here = survivalAt(j);
        const double next = survivalAt(j + 1);
        found.times[target] = times[j] - (times[j] - times[j + 1]) * (here - p) / (here - next);
        found.located[target] = true;
    }
    return found;
}

/// The percentiles of an estimate; both spans equally long.
Percentiles ComputeSurvivalPercentiles(std::span<const double> times, std::span<const double> survival);

} // namespace ozm::survival
