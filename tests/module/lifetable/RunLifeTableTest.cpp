// Runs of life tables: reading cases and tables, and what is refused.

#include "module/lifetable/RunLifeTable.h"
#include "module/resources/LifeTables.h"
#include "tests/module/FakeHost.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <vector>

namespace ozm::survival {
namespace {

using Values = std::vector<double>;
constexpr double none = test::none;

struct Rows {
    Values lower;
    Values withdrawn;
    Values dying;
};

class RunLifeTables : public testing::Test {
protected:
    test::FakeHost host;
    CSurvival analysis{&host};
    SharedSettings shared;
    LifeState state;

    RunLifeTables() {
        analysis.Initialize();
        shared.completeCode = 1;
        shared.censoredCode = 0;
    }
    void Cases(const Values& times, const Values& complete) {
        host.columns = {{"time", times}, {"status", complete}};
        shared.inputDataType = InputDataType::Raw;
        shared.timeVariables = 1;
        shared.List(ListSurvivalTimes) = {1};
        shared.List(ListCensoring) = {2};
    }
    void Table(const Rows& rows) {
        host.columns = {{"lower", rows.lower}, {"withdrawn", rows.withdrawn}, {"dying", rows.dying}};
        shared.inputDataType = InputDataType::Table;
        shared.List(ListIntervalLimits) = {1};
        shared.List(ListWithdrawn) = {2};
        shared.List(ListDying) = {3};
    }
    void Weights(const Values& weights) {
        host.columns.push_back({"w", weights});
        host.weight = static_cast<int>(host.columns.size());
    }
    bool Run() {
        host.messages.clear();
        host.notes.clear();
        return RunLifeTable(analysis, shared, state, nullptr);
    }
    void ExpectRefused(int message) {
        EXPECT_FALSE(Run());
        EXPECT_FALSE(state.results.held);
        ASSERT_EQ(host.messages.size(), 1U);
        EXPECT_EQ(host.messages[0].id, message);
        EXPECT_EQ(host.outstanding, 0);
    }
    [[nodiscard]] const LifeTable& Result() const { return state.results.table; }
};

Values Repeated(std::size_t count, double value) {
    return Values(count, value);
}
Values Counting(int count) {
    Values values(static_cast<std::size_t>(count));
    std::iota(values.begin(), values.end(), 0.0);
    return values;
}
Rows ManyRows(int count) {
    const auto n = static_cast<std::size_t>(count);
    return {Counting(count), Repeated(n, 1), Repeated(n, 2)};
}

TEST_F(RunLifeTables, CasesAndTheSameDataAsATableGiveTheSame) {
    std::mt19937 generator(4);
    Values times;
    Values complete;
    for (int i = 0; i < 400; ++i) {
        times.push_back(static_cast<double>(generator() % 1000) / 100);
        complete.push_back(generator() % 3 == 0 ? 0 : 1);
    }
    Cases(times, complete);
    ASSERT_TRUE(Run());
    const LifeResults cases = state.results;
    ASSERT_EQ(cases.table.rows, 12);
    EXPECT_EQ(cases.valid, 400);
    EXPECT_EQ(cases.uncensored + cases.censored, 400);

    Rows rows;
    for (const std::size_t i : {4U, 0U, 11U, 7U, 1U, 2U, 9U, 10U, 3U, 8U, 6U, 5U}) { // out of order
        rows.lower.push_back(cases.table.lower[i]);
        rows.withdrawn.push_back(cases.table.withdrawn[i]);
        rows.dying.push_back(cases.table.dying[i]);
    }
    Table(rows);
    state.settings.entering = 400;
    state.settings.enteringGiven = true;
    ASSERT_TRUE(Run());
    const LifeResults& table = state.results;
    EXPECT_EQ(table.table.cumulativeSurviving, cases.table.cumulativeSurviving);
    EXPECT_EQ(table.table.hazardError, cases.table.hazardError);
    EXPECT_EQ(table.medians.median, cases.medians.median);
    EXPECT_EQ(table.logLikelihood, cases.logLikelihood);
    for (std::size_t f = 0; f < distributions; ++f)
        for (std::size_t w = 0; w < weightings; ++w)
            EXPECT_EQ(table.fits.fits[f][w].logLikelihood, cases.fits.fits[f][w].logLikelihood);
}

TEST_F(RunLifeTables, AWeightCountsAsSoManyCopies) {
    // 0.1 and 1.9 once, 2 and 2.1 twice and three times.
    Cases({1, 2, 3, 4}, {1, 0, 1, 1});
    Weights({0.1, 1.9, 2, 2.1});
    ASSERT_TRUE(Run());
    const LifeResults weighted = state.results;
    EXPECT_EQ(weighted.valid, 7);
    host.weight = 0;
    Cases({4, 4, 4, 3, 3, 2, 1}, {1, 1, 1, 1, 1, 0, 1});
    ASSERT_TRUE(Run());
    EXPECT_EQ(weighted.table.dying, Result().dying);
    EXPECT_EQ(weighted.table.withdrawn, Result().withdrawn);
}

TEST_F(RunLifeTables, CopiesOfWeightedCasesHaveAsMuchRoomAsTheDataGive) {
    struct {
        std::size_t cases;
        double weight;
        bool fits;
    } const rows[] = {{100, 80, true}, {101, 80, false}, {10000, 25, true}, {10001, 25, false}};
    for (const auto& row : rows) {
        Cases(Counting(static_cast<int>(row.cases)), Repeated(row.cases, 1));
        Weights(Repeated(row.cases, row.weight));
        if (row.fits) {
            EXPECT_TRUE(Run()) << row.cases;
        } else {
            ExpectRefused(StrLifeTooManyCases);
        }
    }
}

TEST_F(RunLifeTables, AStepOfTooFewOrTooManyIntervalsIsGivenUpForGood) {
    state.settings.intervals = 7;
    for (const double largest : {3.0, 30.0}) {
        Cases({0.5, 1.5, 2, largest}, {1, 1, 0, 1});
        state.settings.byStep = true;
        ASSERT_TRUE(Run());
        EXPECT_FALSE(state.settings.byStep);
        EXPECT_EQ(Result().rows, 7);
        ASSERT_FALSE(host.messages.empty());
        EXPECT_EQ(host.messages[0].id, StrLifeStepAdjusted);
    }
    for (const int largest : {4, 29}) { // the last limit is the largest time
        Cases({0.5, 1.5, 2, static_cast<double>(largest)}, {1, 1, 0, 1});
        state.settings.byStep = true;
        ASSERT_TRUE(Run());
        EXPECT_TRUE(state.settings.byStep);
        EXPECT_EQ(Result().rows, largest + 1);
        EXPECT_EQ(Result().dying[Result().Closed()], 1);
    }
    Cases({0.5, 1.5, 2, 9.6}, {1, 1, 0, 1}); // rounds to 10 steps, ends in the tenth
    ASSERT_TRUE(Run());
    EXPECT_EQ(Result().rows, 10);
}

TEST_F(RunLifeTables, TimesThatAreAllTheSame) {
    Cases({0, 0, 0}, {1, 0, 1});
    ExpectRefused(StrLifeNoWidth);
    Cases({5, 5, 5}, {1, 0, 1});
    ASSERT_TRUE(Run());
    EXPECT_EQ(Result().rows, 12);
    EXPECT_EQ(Result().dying[11], 2);
    EXPECT_EQ(Result().withdrawn[11], 1);
}

TEST_F(RunLifeTables, CensoredCasesAreCountedBeforeTheirTimes) {
    // Five censored, three of them without a time: of the valid there are four.
    Cases({1, 2, 3, 4, none, none, -1}, {1, 1, 0, 0, 0, 0, 0});
    ExpectRefused(StrLifeManyCensored);
    // As many as are valid.
    Cases({1, 2, 3, 4, none, none}, {1, 1, 0, 0, 0, 0});
    EXPECT_TRUE(Run());
    // All censored, with good times.
    Cases({1, 2, 3, 4}, {0, 0, 0, 0});
    ASSERT_TRUE(Run());
    EXPECT_EQ(state.results.uncensored, 0);
    EXPECT_EQ(Result().proportionDead[0], 0.5 / 4);
    EXPECT_TRUE(std::ranges::any_of(host.notes,
                                    [](const std::string& note) { return note.find("Nobody died") == 0; }));
}

TEST_F(RunLifeTables, ThreeValidCasesAreNeeded) {
    Cases({1, 2, -1, none, 3}, {1, 0, 1, 1, 2});
    ExpectRefused(StrLifeTooFewValid);
    Cases({1, 2, 3}, {1, 0, 1});
    EXPECT_TRUE(Run());
}

TEST_F(RunLifeTables, AnIntervalWithoutAVarianceKeepsTheTable) {
    Cases({1, 2, 3, 4, 9, 10}, {1, 0, 1, 1, 1, 1});
    state.settings.correct = false;
    ASSERT_TRUE(Run());
    EXPECT_EQ(state.results.fits.stop, FitStop::NoVariance);
    ASSERT_EQ(host.messages.size(), 1U);
    EXPECT_EQ(host.messages[0].id, StrLifeInadequate);
    EXPECT_EQ(Result().rows, 12);
}

TEST_F(RunLifeTables, ATableHasThreeToThirtyRows) {
    for (const int rows : {3, 30}) {
        Table(ManyRows(rows));
        ASSERT_TRUE(Run()) << rows;
        EXPECT_EQ(Result().rows, rows);
    }
    Table(ManyRows(2));
    ExpectRefused(StrLifeTooFewIntervals);
    Table(ManyRows(31));
    ExpectRefused(StrLifeTooManyIntervals);
    // A row that is left out is none.
    host.columns[1].values[17] = -1;
    EXPECT_TRUE(Run());
    EXPECT_EQ(Result().rows, 30);
}

TEST_F(RunLifeTables, RowsWithoutAValueOrWithOneOutOfRangeAreLeftOut) {
    constexpr double most = 99'999'999;
    const Rows bad{{none, 1, 1, 1, 1, 1}, {1, none, -1, most + 1, 1, 1}, {1, 1, 1, 1, none, -1}};
    Rows rows = ManyRows(4);
    const auto append = [](Values& all, const Values& more) {
        all.insert(all.begin(), more.begin(), more.end());
    };
    append(rows.lower, bad.lower);
    append(rows.withdrawn, bad.withdrawn);
    append(rows.dying, bad.dying);
    Table(rows);
    ASSERT_TRUE(Run());
    EXPECT_EQ(Result().rows, 4);
    EXPECT_EQ(Result().entering[0], 12);
    EXPECT_TRUE(std::ranges::any_of(
        host.notes, [](const std::string& note) { return note.find("6 of 10 rows left out") == 0; }));
}

TEST_F(RunLifeTables, WhatATableTakesAsGivenIsSaid) {
    const auto noted = [this](const std::string& text) {
        return std::ranges::any_of(host.notes, [&](const std::string& note) { return note.find(text) == 0; });
    };
    Table({{10, 11, 12}, {1, 1, 1}, {3, 4, 2}});
    ASSERT_TRUE(Run());
    EXPECT_TRUE(noted("The table begins at 10, and the distributions that are fitted begin at 0"));
    EXPECT_TRUE(noted("12 enter the first interval: the number of all that are withdrawn or die, as no"));
    Table({{0, 1, 2}, {1.25, 1, 1}, {3, 4, 2}});
    ASSERT_TRUE(Run());
    EXPECT_TRUE(
        noted("13 enter the first interval: the number of all that are withdrawn or die, 12.25, as a whole"));
    EXPECT_FALSE(noted("The table begins"));
}

TEST_F(RunLifeTables, NumbersWithdrawnAddUpToTheirLimitAtMost) {
    Table({{0, 1, 2}, {1, 1, 99'999'997}, {1, 1, 1}});
    state.settings.entering = 99'999'999;
    state.settings.enteringGiven = true;
    ASSERT_TRUE(Run());
    host.columns[1].values[1] = 2;
    ExpectRefused(StrLifeTooManyObservations);
}

TEST_F(RunLifeTables, TablesThatContradictThemselves) {
    Table({{0, 1, 1, 3}, {1, 1, 1, 1}, {1, 1, 1, 1}});
    ExpectRefused(StrLifeNoWidth);
    Table(ManyRows(5));
    state.settings.enteringGiven = true;
    state.settings.entering = 11; // of 12 who leave before the last row
    ExpectRefused(StrLifeNegativeEntering);
    // All have left before the last rows: the table ends with the first of these.
    state.settings.entering = 9;
    host.columns[1].values = {1, 1, 1, 0, 0};
    host.columns[2].values = {2, 2, 2, 0, 0};
    ASSERT_TRUE(Run());
    EXPECT_EQ(Result().rows, 4);
    EXPECT_EQ(Result().proportionDead[3], 0);
}

TEST_F(RunLifeTables, DatesWithAPartOutOfRangeAreLeftOut) {
    host.columns = {{"m1", {1, 1, 1, 1, 1}}, {"d1", {1, 1, 0, 1, 1}},  {"y1", {90, 90, 90, 90, 90}},
                    {"m2", {1, 2, 1, 3, 3}}, {"d2", {11, 1, 1, 2, 1}}, {"y2", {90, 90, 91, 1990, 32000}},
                    {"s", {1, 0, 1, 1, 1}}};
    shared.inputDataType = InputDataType::Raw;
    shared.timeVariables = 6;
    shared.List(ListSurvivalTimes) = {1, 2, 3, 4, 5, 6};
    shared.List(ListCensoring) = {7};
    ASSERT_TRUE(Run());
    EXPECT_EQ(state.results.valid, 3);
    EXPECT_DOUBLE_EQ(Result().lower[11], 60); // 1 January to 2 March
}

} // namespace
} // namespace ozm::survival
