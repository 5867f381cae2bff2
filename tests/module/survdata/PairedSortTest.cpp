#include "module/survdata/PairedSort.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <random>
#include <utility>
#include <vector>

namespace ozm::survival {
namespace {

struct Pairs {
    std::vector<double> keys;
    std::vector<std::int32_t> companions;
};

/// n keys of `distinct` values in reading order, with ascending companions.
Pairs Reading(std::size_t n, int distinct, unsigned seed) {
    std::mt19937 random(seed);
    Pairs pairs;
    for (std::size_t i = 0; i < n; ++i) {
        pairs.keys.push_back(static_cast<double>(random() % static_cast<unsigned>(distinct)) / 8.0 - 5.0);
        pairs.companions.push_back(static_cast<std::int32_t>(i) + 1);
    }
    return pairs;
}

Pairs Distinct(std::size_t n) {
    Pairs pairs = Reading(n, 2, 1);
    std::iota(pairs.keys.begin(), pairs.keys.end(), -100.25);
    std::shuffle(pairs.keys.begin(), pairs.keys.end(), std::mt19937(7));
    return pairs;
}

/// Keys in a small part of their range, which differ only in the last digits of their patterns; few ties.
Pairs Crowded(std::size_t n) {
    Pairs pairs = Reading(n, 1 << 30, 6);
    for (double& key : pairs.keys)
        key = 1.0 + key * 1e-15;
    pairs.keys[n / 2] = 1e15;
    pairs.keys[n / 3] = -1e15;
    return pairs;
}

SortOutcome SortFast(Pairs& pairs, StopPoll stop = {}) {
    std::vector<double> keys(pairs.keys.size());
    std::vector<std::int32_t> companions(pairs.keys.size());
    return SortTimes(pairs.keys, pairs.companions, keys, companions, stop);
}

TEST(HeapSort, TiesComeOutAsTheStepsGiveThem) {
    // By hand, keys all 1, companions a b c d: heap building moves nothing (no key is strictly greater). Then
    // d is held and a goes to place 4, d to the root; c held, d to place 3, c to the root; b held, c to place
    // 2, b to place 1.
    std::vector<double> keys{1, 1, 1, 1};
    std::vector<std::int32_t> companions{1, 2, 3, 4};
    HeapSortWithIndex(keys, std::span{companions});
    EXPECT_EQ(companions, (std::vector<std::int32_t>{2, 3, 4, 1}));
    HeapSortWithIndex(std::span{keys}.first(1), std::span{companions}.first(1)); // nothing to do
    EXPECT_EQ(companions[0], 2);

    std::vector<double> mixed{2, 1, 2, 1};
    std::vector<std::int16_t> classes{1, 2, 3, 4};
    HeapSortWithIndex(mixed, std::span{classes});
    // Heap building: l=2 holds (1,2), child (1,4) is not greater; l=1 holds (2,1), child (2,3) is not
    // greater. Then (1,4) held, (2,1) to place 4; (2,3) rises; then (1,4) at place 3 is held, (2,3) to place
    // 3, child (1,2) is not greater, so (1,4) at the root; (1,2) held, (1,4) to place 2, (1,2) to place 1.
    EXPECT_EQ(mixed, (std::vector<double>{1, 1, 2, 2}));
    EXPECT_EQ(classes, (std::vector<std::int16_t>{2, 4, 3, 1}));
}

TEST(SortTimes, GivesTheHeapSortsOrderWhereItSaysSo) {
    struct Sample {
        Pairs pairs;
        TieOrder expected;
    };
    const Sample samples[] = {{Reading(500, 10, 3), TieOrder::Exact},
                              {Reading(60000, 400, 4), TieOrder::Stable},
                              {Distinct(60000), TieOrder::Exact}};
    for (const Sample& sample : samples) {
        Pairs heap = sample.pairs;
        HeapSortWithIndex(heap.keys, std::span{heap.companions});
        Pairs fast = sample.pairs;
        const SortOutcome outcome = SortFast(fast);
        EXPECT_EQ(outcome.tieOrder, sample.expected);
        EXPECT_EQ(fast.keys, heap.keys);
        if (outcome.tieOrder == TieOrder::Stable) {
            EXPECT_NE(fast.companions, heap.companions) << "the sample should tell the two orders apart";
            std::vector<double> keys(fast.keys.size());
            std::vector<std::int32_t> companions(fast.keys.size());
            RestoreHeapOrder(fast.keys, fast.companions, keys, companions);
            EXPECT_EQ(fast.keys, heap.keys);
        }
        EXPECT_EQ(fast.companions, heap.companions);
    }
}

TEST(SortTimes, KeysInASmallPartOfTheirRangeKeepTheOrderOfTies) {
    Pairs fast = Crowded(60000);
    std::vector<std::pair<double, std::int32_t>> expected;
    for (std::size_t i = 0; i < fast.keys.size(); ++i)
        expected.emplace_back(fast.keys[i], fast.companions[i]);
    std::ranges::stable_sort(expected, {}, &std::pair<double, std::int32_t>::first);
    EXPECT_EQ(SortFast(fast).tieOrder, TieOrder::Stable);
    for (std::size_t i = 0; i < fast.keys.size(); ++i)
        ASSERT_EQ(expected[i], std::pair(fast.keys[i], fast.companions[i])) << i;
}

TEST(SortTimes, NegativeZeroTiesWithZero) {
    Pairs pairs = Distinct(30000);
    pairs.keys[5] = 0.0;
    pairs.keys[29000] = -0.0;
    EXPECT_EQ(SortFast(pairs).tieOrder, TieOrder::Stable);
    const auto zero = std::find(pairs.keys.begin(), pairs.keys.end(), 0.0) - pairs.keys.begin();
    EXPECT_EQ(pairs.companions[static_cast<std::size_t>(zero)], 6);
}

TEST(SortTimes, AStopLeavesAPermutation) {
    for (int at = 1; at < 100; ++at) {
        int left = at;
        Pairs pairs = Crowded(60000);
        const StopPoll stop{[](void* context) { return --*static_cast<int*>(context) == 0; }, &left};
        const SortOutcome outcome = SortFast(pairs, stop);
        if (outcome.status == Status::Success) {
            EXPECT_GT(at, 30) << "the sort should ask more often";
            return;
        }
        std::sort(pairs.companions.begin(), pairs.companions.end());
        EXPECT_EQ(pairs.companions, Crowded(60000).companions);
    }
}

} // namespace
} // namespace ozm::survival
