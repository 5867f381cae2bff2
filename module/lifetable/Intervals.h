#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>

namespace ozm::survival {

/// Room for the intervals of a life table: 30 that data may fill, and the open row after them.
inline constexpr std::size_t intervalSlots = 31;
using IntervalColumn = std::array<double, intervalSlots>;

/// Intervals of equal width from 0 on; the last one is open.
struct Intervals {
    static constexpr int defaultCount = 12;
    static constexpr int fewest = 3;
    static constexpr int most = 30;

    int count = 0; ///< number of lower limits
    double step = 0.0;

    /// The i-th lower limit, i from 0: i step, by multiplication.
    [[nodiscard]] double Lower(int i) const { return static_cast<double>(i) * step; }
};

/// `count` lower limits (3 to 30), the last of which is the largest time: step = largest / (count - 1).
Intervals IntervalsByNumber(double largestTime, int count = Intervals::defaultCount);

/// k + 1 lower limits a step apart, with k = largest / step rounded to the nearest whole number, halves up.
/// None unless 3 < k < 30.
std::optional<Intervals> IntervalsByStep(double largestTime, double step);

/// What a life table is computed from: lower limits, and how many were withdrawn (censored) and died in each
/// interval. Counts are doubles: those of a table given as input need not be whole.
struct IntervalCounts {
    int intervals = 0;
    double entering = 0.0; ///< alive at the start of the first interval
    IntervalColumn lower{};
    IntervalColumn withdrawn{};
    IntervalColumn dying{};

    /// Leaves out empty intervals at the end.
    void DropEmptyEnd();
};

/// Counts observations into intervals, in any order. A time t belongs to the first interval whose upper limit
/// U = lower + step exceeds it by more than its own 1e-12th part, U > t + t / 1e12: a time on a limit, even
/// one that rounding put just below it, belongs to the next interval. The last interval takes the rest. Empty
/// intervals at the end are kept.
class Tabulation {
public:
    explicit Tabulation(const Intervals& intervals); ///< 1 to `intervalSlots` limits
    void Add(double time, bool complete) {           ///< time >= 0
        (complete ? counts_.dying : counts_.withdrawn)[PlaceOf(time)] += 1.0;
        counts_.entering += 1.0;
    }
    [[nodiscard]] const IntervalCounts& Counts() const { return counts_; }

private:
    /// Starts where division says, which rounding may miss by one.
    [[nodiscard]] std::size_t PlaceOf(double time) const {
        const double bound = time + time / 1e12;
        const double guess = bound * perStep_;
        std::size_t place = guess < static_cast<double>(last_) ? static_cast<std::size_t>(guess) : last_;
        while (place > 0 && upper_[place - 1] > bound)
            --place;
        while (place < last_ && !(upper_[place] > bound))
            ++place;
        return place;
    }

    std::size_t last_;
    double perStep_; ///< 0 where the limits cannot be divided
    IntervalColumn upper_{};
    IntervalCounts counts_;
};

} // namespace ozm::survival
