#include "module/twosample/RunTwoSamples.h"

#include "module/resources/StringIds.h"
#include "tests/module/twosample/TwoFixture.h"

#include <gtest/gtest.h>

#include <functional>

namespace ozm::survival {
namespace {

using test::none;
using test::TwoFixture;

TEST_F(TwoFixture, PoolsBothGroupsInOrder) {
    ASSERT_EQ(Specify(), StepSpecifyTwoSamples);
    ASSERT_EQ(host.Press(analysis, ControlOk), StepTwoResults);
    EXPECT_EQ(host.exitMode, ExitMode::Forward);
    const PooledSample sample = State().results.Sample();
    EXPECT_EQ(sample.counts.uncensored1, 1);
    EXPECT_EQ(sample.counts.censored1, 4);
    EXPECT_EQ(sample.counts.N2(), 5);
    ASSERT_EQ(sample.observations.size(), 10U); // without group 3
    EXPECT_EQ(sample.observations[2].time, 18); // the failure before the one censored at the same time
    EXPECT_TRUE(sample.observations[2].Failed());
    EXPECT_FALSE(sample.observations[3].Failed());
    EXPECT_EQ(host.requests, 0); // small data take no memory from the host
    EXPECT_EQ(host.statusTexts,
              (std::vector<std::string>{" Reading data file ... ", " Preparing data for analysis ... ", ""}));
}

TEST_F(TwoFixture, ListsHoldTwoThousandEach) {
    struct {
        int cases;
        bool weighted;
        int capacity;
    } const rows[] = {{250, false, 250},
                      {251, false, 251},
                      {2000, false, 2000},
                      {2'000'000'000, false, 2000},
                      {3, true, 2000}};
    for (const auto& row : rows) {
        GroupLists lists;
        ASSERT_TRUE(lists.Obtain(analysis, row.cases, row.weighted));
        EXPECT_EQ(lists.Capacity(), row.capacity) << row.cases;
    }
    EXPECT_EQ(host.outstanding, 0);

    // The capacity is a list's, not the sample's: 2000 + 1 in two lists are accepted, 2001 in one are not.
    ManyCases(2001);
    host.columns[2].values[7] = 2;
    EXPECT_EQ(Run(), StepTwoResults);
    host.Press(analysis, ControlCancel);
    EXPECT_EQ(host.outstanding, 0);
    ManyCases(2002);
    host.columns[2].values[7] = 2;
    EXPECT_EQ(Run(), StepSpecifyTwoSamples);
    EXPECT_EQ(host.messages.back().id, StrTwoTooManyCases);
    EXPECT_EQ(
        host.messages.back().text,
        "Too many datapoints; choose the 'Comparing multiple samples' option from the SURVIVAL ANALYSIS "
        "opening menu.");
    EXPECT_EQ(host.outstanding, 0);

    // Weights fill lists of 2000 whatever the number of cases.
    host.messages.clear();
    Data({1, 2, 3}, {1, 1, 1}, {1, 2, 1});
    host.columns.push_back({"w", {1999, 2, 1}});
    host.weight = 4;
    EXPECT_EQ(Run(), StepTwoResults);
    EXPECT_EQ(State().results.counts.uncensored1, 2000);
    host.Press(analysis, ControlCancel);
    host.columns[3].values[0] = 2000;
    EXPECT_EQ(Run(), StepSpecifyTwoSamples);
    EXPECT_EQ(host.messages.back().id, StrTwoTooManyCases);
    EXPECT_EQ(
        host.messages.back().detail,
        "Group 1 has more than 2000 uncensored observations. This analysis takes at most 2000 uncensored and "
        "2000 censored observations of each group, copies of weighted cases counted: select fewer cases. The "
        "comparison of multiple samples is not part of this version yet.");
}

TEST_F(TwoFixture, ChecksLeaveTheDialogOpen) {
    Specify();
    const auto refusedWith = [this](int message) {
        host.messages.clear();
        EXPECT_EQ(host.Press(analysis, ControlOk), -1);
        ASSERT_EQ(host.messages.size(), 1U);
        EXPECT_EQ(host.messages[0].id, message);
        EXPECT_FALSE(host.Dialog().IsClosed());
    };
    AutomationObject script = host.Script();
    script.Put("CodeForGroup2", 9);
    refusedWith(StrInvalidGroupCode); // no case has it; the message lists those that there are
    EXPECT_EQ(host.messages[0].detail,
              "Codes of 'arm' among the selected cases: 1 (5 cases), 2 (5 cases), 3 (1 case).");
    script.Put("CodeForGroup2", none);
    refusedWith(StrInvalidGroupCode);
    script.Put("CodeForGroup2", 1);
    refusedWith(StrIdenticalGroupCodes);
    script.Put("CodeForCensoredResponses", 1);
    refusedWith(StrIdenticalCensoringCodes);
    using List = AutomationValue::List;
    script.Put("Variables", List{List{1}, List{2}, List{}});
    script.Put("CodeForCensoredResponses", 0);
    refusedWith(StrNoGroupingVariable);
    script.Put("Variables", List{List{1, 2, 1}, List{2}, List{3}});
    refusedWith(StrInvalidTimeVariables);
}

TEST_F(TwoFixture, EachStatusShowsItsMessageAndKeepsNothing) {
    EachKeepsNothing(
        {
            {"two valid",
             [&] {
                 Data({1, 2, -1}, {1, 1, 1}, {1, 2, 1});
             },
             StrTwoTooFewValid},
            {"one uncensored",
             [&] {
                 Data({1, 2, 3}, {1, 0, 0}, {1, 2, 1});
             },
             StrTwoEmptyGroup},
            {"a group without a valid time",
             [&] {
                 Data({1, 2, 3, none}, {1, 1, 1, 1}, {1, 1, 1, 2});
             },
             StrTwoEmptyGroup},
            {"memory",
             [&] { ManyCases(251), host.columns[2].values[0] = 2, host.refuseRequest = host.requests + 5; },
             StrTwoNoMemory},
            {"stopped", [&] { host.stopAt = host.questions + 1; }, 0},
        },
        StepSpecifyTwoSamples, [this] { return State().results.counts.N(); });
    EXPECT_EQ(CheckGroups({1, 0, 1, 0}), Status::Success); // one failure in each group is enough
    EXPECT_EQ(CheckGroups({0, 5, 2, 0}), Status::Success); // and so is a group without any
}

TEST_F(TwoFixture, AHostThatThrowsWhileReadingGetsEverythingBack) {
    ManyCases(600);
    host.columns[2].values[0] = 2;
    Specify();
    host.throwsFrom = 300;
    host.Dialog().Press(ControlOk);
    EXPECT_EQ(host.outstanding, 0);
    EXPECT_EQ(host.progressShown, 0);
    host.throwsFrom = 1000;
    EXPECT_EQ(host.Press(analysis, ControlOk), StepTwoResults);
}

TEST_F(TwoFixture, AMessageTellsTheCountsOfThisRun) {
    Data({1, 2, 3, 4, 5}, {1, 0, 0, 1, 7}, {1, 2, 1, 3, 1});
    EXPECT_EQ(Run(), StepSpecifyTwoSamples);
    EXPECT_EQ(host.messages.back().text, "Fewer than 2 uncensored cases; cannot perform analysis.          ");
    EXPECT_EQ(
        host.messages.back().detail,
        "Two uncensored observations in all are needed, and an observation in each group.\n"
        "Group 1: 1 uncensored, 1 censored. Group 2: 0 uncensored, 1 censored.\n"
        "5 cases in the data, 5 selected, 3 valid.\n"
        "2 of 5 cases left out: 1 with another code of 'died' than 1 or 0, 1 with another code of 'arm' than "
        "1 (CMF) or 2 (control).\n"
        "Codes of 'died' among the selected cases: 0 (2 cases), 1 (2 cases), 7 (1 case).\n"
        "Codes of 'arm' among the selected cases: 1 (3 cases), 2 (1 case), 3 (1 case).");
}

} // namespace
} // namespace ozm::survival
