// Intervals and the counting of cases into them.

#include "module/lifetable/Intervals.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace ozm::survival {
namespace {

TEST(Intervals, AStepGivesFourToTwentyNineIntervalsBeforeTheOpenOne) {
    // The quotient rounds halves up; 3 and 30 are no longer taken.
    for (const double step : {1e-8, 0.1, 1.0, 7.0, 1e7}) {
        for (int k = 1; k <= 40; ++k) {
            const auto intervals = IntervalsByStep(k * step, step);
            ASSERT_EQ(intervals.has_value(), k > 3 && k < 30) << k << " steps of " << step;
            if (!intervals) continue;
            EXPECT_EQ(intervals->count, k + 1);
            EXPECT_EQ(intervals->step, step);
        }
    }
    EXPECT_FALSE(IntervalsByStep(3.49, 1));
    EXPECT_EQ(IntervalsByStep(3.5, 1)->count, 5);
    EXPECT_EQ(IntervalsByStep(4.5, 1)->count, 6);
    EXPECT_EQ(IntervalsByStep(29.49, 1)->count, 30);
    EXPECT_FALSE(IntervalsByStep(29.5, 1));
    EXPECT_FALSE(IntervalsByStep(0, 1));
    EXPECT_FALSE(IntervalsByStep(1e300, 1e-8));
}

TEST(Intervals, ATimeOnALimitBeginsTheNextIntervalWhateverTheStep) {
    // i / q and i (1 / q) round differently.
    for (int q = 1; q <= 1000; ++q) {
        Tabulation tabulation({.count = 30, .step = 1.0 / q});
        for (int i = 0; i < 30; ++i)
            tabulation.Add(static_cast<double>(i) / q, i % 2 == 0);
        for (std::size_t i = 0; i < 30; ++i)
            ASSERT_EQ(tabulation.Counts().dying[i] + 2 * tabulation.Counts().withdrawn[i], i % 2 == 0 ? 1 : 2)
                << i << "/" << q;
    }
}

TEST(Intervals, TheLargestTimeIsInTheLastInterval) {
    std::mt19937_64 generator(12);
    for (int i = 0; i < 10'000; ++i) {
        const double largest = static_cast<double>(generator()) * 0x1p-50;
        const int count = 3 + i % 28;
        Tabulation tabulation(IntervalsByNumber(largest, count));
        tabulation.Add(largest, true);
        ASSERT_EQ(tabulation.Counts().dying[static_cast<std::size_t>(count) - 1], 1)
            << largest << " " << count;
    }
}

TEST(Intervals, CasesCountInTheFirstIntervalThatEndsAfterThem) {
    std::mt19937_64 generator(11);
    for (int count = 3; count <= 30; ++count) {
        std::vector<double> times;
        for (int i = 0; i < 500; ++i)
            times.push_back(static_cast<double>(generator() % 2000) / 7);
        const Intervals intervals = IntervalsByNumber(*std::max_element(times.begin(), times.end()), count);
        IntervalCounts expected;
        Tabulation tabulation(intervals);
        for (const double time : times) {
            const bool complete = generator() % 2 == 0;
            int i = 0;
            while (i < count - 1 && !(intervals.Lower(i) + intervals.step > time + time / 1e12))
                ++i;
            (complete ? expected.dying : expected.withdrawn)[static_cast<std::size_t>(i)] += 1;
            tabulation.Add(time, complete);
        }
        EXPECT_EQ(tabulation.Counts().dying, expected.dying);
        EXPECT_EQ(tabulation.Counts().withdrawn, expected.withdrawn);
        EXPECT_EQ(tabulation.Counts().entering, 500);
    }
}

TEST(Intervals, EmptyOnesAtTheEndAreDroppedAndNoOthers) {
    Tabulation tabulation({.count = 8, .step = 1});
    for (const double time : {0.5, 3.5, 5.5})
        tabulation.Add(time, time == 3.5);
    IntervalCounts counts = tabulation.Counts();
    counts.DropEmptyEnd();
    EXPECT_EQ(counts.intervals, 6);
    counts.DropEmptyEnd();
    EXPECT_EQ(counts.intervals, 6);
}

} // namespace
} // namespace ozm::survival
