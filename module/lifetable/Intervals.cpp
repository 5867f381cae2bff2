#include "module/lifetable/Intervals.h"

#include <cmath>
#include <limits>

namespace ozm::survival {

Intervals IntervalsByNumber(double largestTime, int count) {
    return {count, largestTime / static_cast<double>(count - 1)};
}

std::optional<Intervals> IntervalsByStep(double largestTime, double step) {
    const double k = std::round(largestTime / step);
    if (!(k > Intervals::fewest && k < Intervals::most)) return std::nullopt;
    return Intervals{static_cast<int>(k) + 1, step};
}

void IntervalCounts::DropEmptyEnd() {
    const auto isEmpty = [this](int i) {
        const auto place = static_cast<std::size_t>(i);
        return withdrawn[place] == 0.0 && dying[place] == 0.0;
    };
    while (intervals > 0 && isEmpty(intervals - 1))
        --intervals;
}

Tabulation::Tabulation(const Intervals& intervals)
    : last_(static_cast<std::size_t>(intervals.count) - 1),
      // A step too small or too large for its reciprocal: every search begins at the first interval.
      perStep_(intervals.step > std::numeric_limits<double>::min() && intervals.step < 1e300
                   ? 1.0 / intervals.step
                   : 0.0) {
    counts_.intervals = intervals.count;
    for (int i = 0; i < intervals.count; ++i) {
        const auto place = static_cast<std::size_t>(i);
        counts_.lower[place] = intervals.Lower(i);
        upper_[place] = counts_.lower[place] + intervals.step;
    }
}

} // namespace ozm::survival
