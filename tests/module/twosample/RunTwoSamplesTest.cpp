#include "module/twosample/RunTwoSamples.h"

#include "module/resources/Shared.h"
#include "module/resources/TwoSamples.h"
#include "tests/module/AnalysisFixture.h"

#include <functional>

namespace ozm::survival {
namespace {

using test::Column;
using test::none;
using test::TwoFixture;

TEST_F(TwoFixture, PoolsBothGroupsInOrder) {
    ASSERT_EQ(Specify(), StepSpecifyTwoSamples);
    ASSERT_EQ(host.Press(analysis, ControlOk), StepTwoResults);
    EXPECT_EQ(host.exitMode, ExitMode::Forward);
    const PooledSample sample = State().results.Sample();
    EXPECT_EQ(sample.Group(1).censored, 4);
    EXPECT_EQ(sample.Group(2).All(), 5);
    ASSERT_EQ(sample.observations.size(), 10U); // without group 3
    EXPECT_EQ(sample.observations[2].time, 18); // the failure before the one censored at the same time
    EXPECT_TRUE(sample.observations[2].Failed());
    EXPECT_FALSE(sample.observations[3].Failed());
    EXPECT_EQ(host.requests, 0); // small data take no memory from the host
    EXPECT_EQ(host.statusTexts,
              (std::vector<std::string>{" Reading data file ... ", " Preparing data for analysis ... ", ""}));
}

TEST_F(TwoFixture, AListHoldsTwoThousand) {
    // Whatever the number of cases; those of the other group have their own.
    Data({1, 2, 3}, {1, 1, 1}, {1, 2, 1});
    host.columns.push_back({"w", {1999, 2, 1}});
    host.weight = 4;
    EXPECT_EQ(Run(), StepTwoResults);
    EXPECT_EQ(State().results.groups[0].uncensored, 2000);
    host.Press(analysis, ControlCancel);
    host.columns[3].values[0] = 2000;
    EXPECT_EQ(Run(), StepSpecifyTwoSamples);
    EXPECT_TRUE(
        host.messages.back().detail.starts_with("Group 1 has more than 2000 uncensored observations."));
}

TEST_F(TwoFixture, ChecksItsGroups) {
    Specify();
    const auto refusedWith = [this](int message) {
        host.messages.clear();
        EXPECT_EQ(host.Press(analysis, ControlOk), -1);
        ASSERT_EQ(host.messages.size(), 1U);
        EXPECT_EQ(host.messages[0].id, message);
    };
    AutomationObject script = host.Script();
    script.Put("CodeForGroup2", 9);
    refusedWith(StrInvalidGroupCode); // no case has it; the message lists those that there are
    EXPECT_EQ(host.messages[0].detail,
              "Codes of 'arm' among the selected cases: 1 (5 cases), 2 (5 cases), 3 (1 case).");
    script.Put("CodeForGroup2", none);
    refusedWith(StrInvalidGroupCode);
    // A variable of more codes than are gathered is asked for the two.
    for (int code = 4; code <= 300; ++code)
        for (Column* column : {&host.columns[0], &host.columns[1], &host.columns[2]})
            column->values.push_back(code);
    script.Put("CodeForGroup2", 299.5);
    refusedWith(StrInvalidGroupCode);
    EXPECT_TRUE(host.messages[0].detail.ends_with("12 (1 case), and 288 more.")) << host.messages[0].detail;
    script.Put("CodeForGroup2", std::nextafter(300.0, 0.0));
    host.columns[1].values.back() = 1;
    EXPECT_EQ(host.Press(analysis, ControlOk), StepTwoResults);
    host.Press(analysis, ControlCancel);
    script = host.Script();
    script.Put("CodeForGroup2", 1);
    refusedWith(StrIdenticalGroupCodes);
    using List = AutomationValue::List;
    script.Put("Variables", List{List{1}, List{2}, List{}});
    refusedWith(StrNoGroupingVariable);
}

TEST_F(TwoFixture, DataThatCannotBeComparedAreRefused) {
    Data({1, 2, -1}, {1, 1, 1}, {1, 2, 1});
    ExpectRefused(StrTwoTooFewValid);
    Data({1, 2, 3}, {1, 0, 0}, {1, 2, 1}); // one uncensored
    ExpectRefused(StrTwoEmptyGroup);
    Data({1, 2, 3, none}, {1, 1, 1, 1}, {1, 1, 1, 2}); // a group without a valid time
    ExpectRefused(StrTwoEmptyGroup);
    using Counts = std::array<GroupCount, 2>;
    EXPECT_EQ(CheckGroups(Counts{{{1, 0}, {1, 0}}}), Status::Success); // one failure in each group is enough
    EXPECT_EQ(CheckGroups(Counts{{{0, 5}, {2, 0}}}), Status::Success); // and so is a group without any
}

TEST_F(TwoFixture, AMessageTellsTheCountsOfThisRun) {
    Data({1, 2, 3, 4, 5}, {1, 0, 0, 1, 7}, {1, 2, 1, 3, 1});
    EXPECT_EQ(Run(), StepSpecifyTwoSamples);
    EXPECT_EQ(
        host.messages.back().detail,
        "Two uncensored observations in all are needed, and an observation in each group.\n"
        "Group 1: 1 uncensored, 1 censored. Group 2: 0 uncensored, 1 censored.\n"
        "5 cases in the data, 5 selected, 3 valid.\n"
        "2 of 5 cases left out: 1 with a code of 'died' other than 1 or 0, 1 with a code of 'arm' other than "
        "1 (CMF) or 2 (control).\n"
        "Codes of 'died' among the selected cases: 0 (2 cases), 1 (2 cases), 7 (1 case).\n"
        "Codes of 'arm' among the selected cases: 1 (3 cases), 2 (1 case), 3 (1 case).");
}

} // namespace
} // namespace ozm::survival
