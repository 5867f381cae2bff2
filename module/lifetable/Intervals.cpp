#include "module/lifetable/Intervals.h"

namespace ozm::survival {

Intervals IntervalsByNumber(double largestTime, int count) {
    return {count, largestTime / static_cast<double>(count - 1)};
}

Tabulation::Tabulation(const Intervals& intervals) : step_(intervals.step) {
    counts_.intervals = intervals.count;
    for (int i = 0; i < intervals.count; ++i)
        counts_.lower[static_cast<std::size_t>(i)] = intervals.Lower(i);
}

void Tabulation::Add(double time, bool complete) {
    const auto last = static_cast<std::size_t>(counts_.intervals) - 1;
    while (current_ < last && !(counts_.lower[current_] + step_ > time + time / 1e12))
        ++current_;
    (complete ? counts_.dying : counts_.withdrawn)[current_] += 1.0;
    counts_.entering += 1.0;
}

} // namespace ozm::survival
