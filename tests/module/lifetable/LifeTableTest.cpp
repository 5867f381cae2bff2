#include "module/lifetable/LifeTable.h"
#include "tests/support/Golden.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace ozm::survival {
namespace {

/// Times in ascending order, each with whether it is complete.
using Sample = std::vector<std::pair<double, bool>>;

IntervalCounts Tabulate(const Intervals& intervals, const Sample& sample) {
    Tabulation tabulation(intervals);
    for (const auto& [time, complete] : sample)
        tabulation.Add(time, complete);
    return tabulation.Counts();
}

std::vector<double> FirstOf(const IntervalColumn& column, int rows) {
    return {column.begin(), column.begin() + rows};
}

using Values = std::vector<double>;

// Five limits to 8: 0 2 4 6 8. A time on a limit begins the next interval, so
//   0-2: 1+ 1     2-4: 2 3+     4-6: nobody     6-8: 6 7     8-: 8
const Sample eightTimes{{1, false}, {1, true}, {2, true}, {3, false}, {6, true}, {7, true}, {8, true}};

TEST(LifeTable, TiesOnLimitsAndAnEmptyIntervalByHand) {
    const IntervalCounts counts = Tabulate(IntervalsByNumber(8, 5), eightTimes);
    EXPECT_EQ(FirstOf(counts.lower, 5), (Values{0, 2, 4, 6, 8}));
    EXPECT_EQ(FirstOf(counts.withdrawn, 5), (Values{1, 1, 0, 0, 0}));
    EXPECT_EQ(FirstOf(counts.dying, 5), (Values{1, 1, 0, 2, 1}));
    EXPECT_EQ(counts.entering, 7);

    LifeTable t;
    ASSERT_EQ(ComputeLifeTable(counts, Correction::Off, t), LifeTableStatus::Success);
    ASSERT_EQ(t.rows, 5);
    EXPECT_EQ(FirstOf(t.entering, 5), (Values{7, 5, 3, 3, 1}));
    EXPECT_EQ(FirstOf(t.exposed, 5), (Values{6.5, 4.5, 3, 3, 1}));
    const Values q{1 / 6.5, 1 / 4.5, 0, 2.0 / 3, 1};
    double surviving = 1;
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_DOUBLE_EQ(t.proportionDead[i], q[i]);
        EXPECT_DOUBLE_EQ(t.proportionSurviving[i], 1 - q[i]);
        EXPECT_DOUBLE_EQ(t.cumulativeSurviving[i], surviving);
        surviving *= 1 - q[i];
    }

    // Corrected: nobody dies in 4-6, all exposed die from 8 on. The other intervals stay.
    ASSERT_EQ(ComputeLifeTable(counts, Correction::On, t), LifeTableStatus::Success);
    EXPECT_DOUBLE_EQ(t.proportionDead[2], 0.5 / 3);
    EXPECT_DOUBLE_EQ(t.proportionDead[3], 2.0 / 3);
    EXPECT_DOUBLE_EQ(t.proportionDead[4], 0.5);
    EXPECT_DOUBLE_EQ(t.cumulativeSurviving[4], 5.5 / 6.5 * 3.5 / 4.5 * 2.5 / 3 / 3);
}

TEST(LifeTable, AGroupThatDiesOutEndsWithARowOfNobody) {
    // Limits 0 2 4 6 8, all dead by 3: rows 0-2, 2-4 and one that nobody enters, though 4 is not the last
    // limit.
    LifeTable t;
    const IntervalCounts counts = Tabulate(IntervalsByNumber(8, 5), {{1, true}, {3, true}});
    ASSERT_EQ(ComputeLifeTable(counts, Correction::On, t), LifeTableStatus::Success);
    ASSERT_EQ(t.rows, 3);
    EXPECT_EQ(FirstOf(t.lower, 3), (Values{0, 2, 4}));
    EXPECT_EQ(FirstOf(t.entering, 3), (Values{2, 1, 0}));
    EXPECT_EQ(FirstOf(t.proportionDead, 3), (Values{0.5, 0.5, 0})); // the second corrected, the last not
    EXPECT_EQ(FirstOf(t.cumulativeSurviving, 3), (Values{1, 0.5, 0.25}));
    ASSERT_EQ(ComputeLifeTable(counts, Correction::Off, t), LifeTableStatus::Success);
    EXPECT_EQ(FirstOf(t.cumulativeSurviving, 3), (Values{1, 0.5, 0}));
}

TEST(LifeTable, ATimeWithinRoundingOfALimitBeginsTheNextInterval) {
    // Step 0.1: the fourth limit, 3 x 0.1, rounds to just above 0.3.
    const IntervalCounts counts = Tabulate(IntervalsByNumber(1.1), {{0.3, true}, {1.1, true}});
    EXPECT_GT(counts.lower[3], 0.3);
    EXPECT_EQ(counts.dying[3], 1);
    EXPECT_EQ(counts.dying[11], 1);
}

TEST(LifeTable, CountsThatGiveNoTable) {
    LifeTable t;
    const auto allAtZero = Tabulate(IntervalsByNumber(0), {{0, true}, {0, false}, {0, true}});
    EXPECT_EQ(ComputeLifeTable(allAtZero, Correction::On, t), LifeTableStatus::NoWidth);

    EXPECT_EQ(ComputeLifeTable(IntervalCounts{}, Correction::On, t), LifeTableStatus::NoIntervals);
    IntervalCounts counts{.intervals = 3, .entering = 0, .lower = {0, 1, 2}, .withdrawn = {}, .dying = {}};
    EXPECT_EQ(ComputeLifeTable(counts, Correction::On, t), LifeTableStatus::NoIntervals);
    counts.entering = 10;
    counts.withdrawn = {0, 4};
    counts.dying = {5, 2};
    EXPECT_EQ(ComputeLifeTable(counts, Correction::On, t), LifeTableStatus::NegativeEntering);
    counts.withdrawn = {0, 3};
    EXPECT_EQ(ComputeLifeTable(counts, Correction::On, t), LifeTableStatus::Success);
    // As many limits as there are slots, though more are claimed; widths count beyond the last row.
    counts.intervals = 40;
    EXPECT_EQ(ComputeLifeTable(counts, Correction::On, t), LifeTableStatus::NoWidth);
    for (std::size_t i = 0; i < intervalSlots; ++i)
        counts.lower[i] = static_cast<double>(i);
    EXPECT_EQ(ComputeLifeTable(counts, Correction::On, t), LifeTableStatus::Success);
    EXPECT_EQ(t.rows, 3);
}

void AgreesWithGolden(const std::string& data, const char* timeName, const char* completeName,
                      const std::string& group) {
    const auto cases = korvana::golden::Table::read("../../examples/data/" + data + ".csv");
    const auto ofGroup = cases.where("group", group);
    const Values times = ofGroup.numbers(timeName);
    const Values complete = ofGroup.numbers(completeName);
    Sample sample;
    for (std::size_t i = 0; i < times.size(); ++i)
        sample.emplace_back(times[i], complete[i] == 1);
    std::sort(sample.begin(), sample.end());

    LifeTable t;
    const Values all = cases.numbers(timeName);
    const Intervals intervals = IntervalsByNumber(*std::max_element(all.begin(), all.end()));
    ASSERT_EQ(ComputeLifeTable(Tabulate(intervals, sample), Correction::On, t), LifeTableStatus::Success);
    const auto golden =
        korvana::golden::Table::read("life-tables.csv").where("data", data).where("group", group);
    ASSERT_EQ(t.rows, static_cast<int>(golden.size())) << group;
    EXPECT_EQ(FirstOf(t.entering, t.rows), golden.numbers("entering")) << group;
    EXPECT_EQ(FirstOf(t.withdrawn, t.rows), golden.numbers("withdrawn")) << group;
    EXPECT_EQ(FirstOf(t.dying, t.rows), golden.numbers("dying")) << group;
    for (std::size_t i = 0; i < golden.size(); ++i) {
        EXPECT_NEAR(t.lower[i], golden.numbers("lower")[i], 1e-12) << group << " " << i;
        EXPECT_NEAR(t.proportionSurviving[i], golden.numbers("surviving")[i], 1e-14) << group << " " << i;
        EXPECT_NEAR(t.cumulativeSurviving[i], golden.numbers("cumulative")[i], 1e-14) << group << " " << i;
    }
}

TEST(LifeTable, AgreesWithAnIndependentComputation) {
    AgreesWithGolden("leukaemia-6mp", "weeks", "relapse", "6-MP");
    AgreesWithGolden("leukaemia-6mp", "weeks", "relapse", "placebo");
    AgreesWithGolden("aml", "time", "status", "Maintained");
    AgreesWithGolden("aml", "time", "status", "Nonmaintained");
}

} // namespace
} // namespace ozm::survival
