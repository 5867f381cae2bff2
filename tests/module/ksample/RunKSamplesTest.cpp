#include "module/ksample/RunKSamples.h"

#include "module/resources/Groups.h"
#include "module/resources/KSamples.h"
#include "module/resources/Shared.h"
#include "tests/module/AnalysisFixture.h"

#include <algorithm>
#include <cmath>

namespace ozm::survival {
namespace {

using List = AutomationValue::List;
using test::KsFixture;
using test::none;

TEST_F(KsFixture, WithoutCodesEveryGroupThatSelectedCasesHaveIsCompared) {
    ASSERT_EQ(Run(), StepKsResults);
    const KsResults& results = State().results;
    ASSERT_EQ(results.groups.size(), 3U);
    EXPECT_EQ(results.groups[2].All(), 3);
    EXPECT_EQ(results.observations.Size(), 13U);
    EXPECT_EQ(results.test.df, 2);
    EXPECT_EQ(host.requests, 0); // small data take no memory from the host
    EXPECT_EQ(host.statusTexts,
              (std::vector<std::string>{" Reading data file ... ", " Preparing data for analysis ... ", ""}));
    host.Press(analysis, ControlCancel);
    // Given codes: in their order, others are left out; no trace of them is left when the list is emptied.
    host.Script().Put("Codes", List{3, 1});
    ASSERT_EQ(host.Press(analysis, ControlOk), StepKsResults);
    EXPECT_EQ(State().results.groups[0].All(), 3);
    EXPECT_TRUE(State().results.test.TwoGroups());
    host.Press(analysis, ControlCancel);
    EXPECT_EQ(host.Script().Get("Codes").value, (AutomationValue{List{3.0, 1.0}}));
    host.Script().Put("Codes", List{});
    host.selected.assign(13, true);
    std::fill_n(host.selected.begin(), 5, false); // group 1
    ASSERT_EQ(host.Press(analysis, ControlOk), StepKsResults);
    EXPECT_EQ(ModuleState().shared.groupCodes, (std::vector<double>{2, 3}));
}

TEST_F(KsFixture, ChecksItsGroups) {
    Specify();
    const auto refusedWith = [this](int message, const std::string& detail) {
        host.messages.clear();
        EXPECT_EQ(host.Press(analysis, ControlOk), -1);
        ASSERT_EQ(host.messages.size(), 1U);
        EXPECT_EQ(host.messages[0].id, message);
        EXPECT_NE(host.messages[0].detail.find(detail), std::string::npos) << host.messages[0].detail;
    };
    AutomationObject script = host.Script();
    script.Put("Codes", List{2, 1, 2});
    refusedWith(StrKsCodeTwice, "The code 2 stands there twice.");
    script.Put("Codes", List{2});
    refusedWith(StrKsTooFewGroups, "Codes of 'arm' among the selected cases: 1 (5 cases)");
    script.Put("Codes", List{1, none});
    refusedWith(StrInvalidGroupCode, "Codes of 'arm'");
    // A code per case.
    for (int i = 0; i < 251; ++i) {
        host.columns[0].values.push_back(1);
        host.columns[1].values.push_back(1);
        host.columns[2].values.push_back(100 + i);
    }
    script.Put("Codes", List{});
    refusedWith(StrKsTooManyGroups, "Give the codes of the groups to compare");
    script.Put("Variables", List{List{1}, List{2}, List{}});
    refusedWith(StrNoGroupingVariable, "");
}

TEST_F(KsFixture, DataThatCannotBeComparedAreRefused) {
    const auto refused = [this](int message, const std::string& detail) {
        ExpectRefused(message);
        EXPECT_NE(host.messages.back().detail.find(detail), std::string::npos) << host.messages.back().detail;
    };
    Data({1, 2, 3}, {1, 7, 1}, {1, 2, 3});
    refused(StrKsTooFewValid, "1 with a code of 'died' other than 1 or 0");
    Data({1, 2, 3, 4}, {1, 0, 1, 0}, {1, 2, 3, 3});
    refused(StrKsFewerThan3Uncensored, "");
    Data({1, 2, 3, 4, 5, 6}, {1, 0, 1, 1, 1, 0}, {1, 2, 3, 3, 3, 2});
    refused(StrKsGroupWithoutUncensored, "Without an uncensored case: 2 (control) (2 censored).");
    // A code that no case has is an empty group.
    Specify();
    host.Script().Put("Codes", List{1, 3, 9});
    EXPECT_EQ(host.Press(analysis, ControlOk), StepSpecifyKSamples);
    EXPECT_EQ(host.messages.back().id, StrKsGroupWithoutUncensored);
    EXPECT_NE(host.messages.back().detail.find("Without an uncensored case: 9 (0 censored)."),
              std::string::npos);
    EXPECT_EQ(KsMessage(KsStatus::TooFewUncensored), StrKsTooFewUncensored);
}

TEST_F(KsFixture, DialogsAreThoseOfTheStepTable) {
    EXPECT_EQ(Specify(), 106);
    EXPECT_EQ(host.Dialog().Template().number, 3042);
    EXPECT_EQ(host.Dialog().Template().title, "Comparing Survival in Multiple Groups");
    // The codes of this comparison are not those of two samples.
    host.Script().Put("Codes", List{3, 2, 1});
    ASSERT_EQ(host.Press(analysis, ControlOk), 111);
    EXPECT_EQ(host.Dialog().Template().number, 3044);
    EXPECT_EQ(host.Dialog().Template().title, "Comparing Survival in Multiple Groups, Results");
    host.Go(analysis, StepSpecifyTwoSamples);
    EXPECT_TRUE(std::isnan(std::get<double>(host.Script().Get("CodeForGroup1").value.value)));
}

TEST_F(KsFixture, TakesAtMost250Groups) {
    const auto groupsOf = [this](int groups) {
        std::vector<double> times;
        std::vector<double> codes;
        for (int i = 0; i < groups; ++i) {
            times.push_back(1 + i);
            codes.push_back(i);
        }
        Data(times, std::vector<double>(times.size(), 1.0), codes);
        Specify();
        return host.Press(analysis, ControlOk);
    };
    EXPECT_EQ(groupsOf(250), StepKsResults);
    MakeEveryOutput();
    EXPECT_EQ(groupsOf(251), -1);
    // Values that are equal as codes are one group, wherever they stand: none is left out, none counts twice.
    for (double& code : host.columns[2].values)
        if (code == 7.0) code = std::nextafter(6.0, 7.0);
    EXPECT_EQ(host.Press(analysis, ControlOk), StepKsResults);
    EXPECT_EQ(State().results.groups.size(), 250U);
    EXPECT_EQ(State().results.observations.Size(), 251U);
    EXPECT_EQ(groupsOf(300), -1);
    host.columns[2].values[7] = std::nextafter(6.0, 7.0);
    EXPECT_EQ(host.Press(analysis, ControlOk), -1);
    EXPECT_EQ(host.messages.back().id, StrKsTooManyGroups);
}

TEST_F(KsFixture, TakesAtMost32767Cases) {
    ManyCases(32767);
    EXPECT_EQ(Run(), StepKsResults);
    EXPECT_EQ(State().results.observations.Size(), 32767U);
    EXPECT_EQ(host.outstanding, 2);
    host.Press(analysis, ControlCancel);
    ManyCases(32768);
    ExpectRefused(StrKsTooManyCases);
    // Copies of weighted cases count; their array is as long as weights ask for, whatever the number of
    // cases.
    Data({1, 2, 3}, {1, 1, 1}, {1, 2, 2});
    host.columns.push_back({"w", {32765, 1, 1}});
    host.weight = 4;
    EXPECT_EQ(Run(), StepKsResults);
    EXPECT_EQ(State().results.groups[0].uncensored, 32765);
    EXPECT_EQ(KsArrays::CapacityFor(3, true), 10'000'000);
    EXPECT_EQ(KsArrays::CapacityFor(3, false), 5000);
    EXPECT_EQ(KsArrays::CapacityFor(5001, false), 5001);
    EXPECT_EQ(KsArrays::CapacityFor(20'000'000, false), 10'000'000);
}

TEST_F(KsFixture, TheHeaderHasTheTestOfTwoAndOfMoreGroups) {
    Run();
    EXPECT_TRUE(host.Script().Call("Summary").ok);
    for (const char* line :
         {"Comparing Survival in Several Groups, Results\n", "Grouping variable: arm    3 Groups\n",
          "Total number of valid observations: 13\n", "uncensored: 8    censored: 5\n",
          "               1 = CMF\n               2 = control\n               3\n"})
        EXPECT_NE(host.report.find(line), std::string::npos) << line << host.report;
    const std::size_t more = host.report.find("Chi-square = ");
    ASSERT_NE(more, std::string::npos);
    EXPECT_NE(host.report.find(" df = 2    p = ", more), std::string::npos) << host.report;
    host.Press(analysis, ControlCancel);
    host.report.clear();
    host.Script().Put("Codes", List{1, 2});
    host.Press(analysis, ControlOk);
    EXPECT_TRUE(host.Script().Call("Summary").ok);
    // S = 18, sum of squares 208, N = 5 + 5, correction 0.5: Z = 17.5 / sqrt(208 * 25 / 90).
    EXPECT_NE(host.report.find("         Z = 2.302277"), std::string::npos) << host.report;
}

TEST_F(KsFixture, TablesByGroup) {
    Run();
    MakeEveryOutput();
    const test::Sheet scores = SheetOf("Scores");
    EXPECT_EQ(scores.notes[0], "Variables: Survival times by arm (3 groups)");
    EXPECT_EQ(scores.notes[1], "Censoring var.: died  (Censored cases are marked with +)");
    EXPECT_TRUE(scores.notes[2].starts_with("Chi\u00b2 = ")) << scores.notes[2];
    EXPECT_EQ(scores.ids, (std::vector<std::string>{"group", "groupLabel", "score", "time", "censored"}));
    EXPECT_EQ(scores.numbers[0][0], 3); // the shortest time
    EXPECT_EQ(scores.numbers[2][0], -12);
    EXPECT_EQ(scores.numbers[3][2], 15);
    EXPECT_EQ(scores.numbers[3][3], 16);
    EXPECT_TRUE(scores.texts[4][2].empty() && scores.texts[4][3] == "+"); // 15 died, 16 is censored
    EXPECT_EQ(SheetOf("Log-Rank, Tarone-Ware and Peto & Peto Tests").rowHeadings,
              (std::vector<std::string>{"Log-rank", "Tarone-Ware", "Peto & Peto"}));
    const test::Sheet summary = SheetOf("Summary statistics for each group");
    const auto& sums = summary.numbers[2];
    EXPECT_EQ(sums[0] + sums[1] + sums[2], 0.0);
    const test::Sheet descriptive = SheetOf("Descriptive statistics for each group");
    EXPECT_EQ(descriptive.numbers[0], (std::vector<double>{20, 19, 9, 19})); // medians, and of all
    EXPECT_EQ(descriptive.numbers[5].back(), 13);
    EXPECT_EQ(SheetOf("Life Table for Group 1 (CMF)").numbers[1][0], 5);
    EXPECT_EQ(SheetOf("Pairwise Comparisons, Log-Rank Test").numbers[0], (std::vector<double>{1, 1, 2}));
    const test::Sheet curves = SheetOf("Cumulative Proportion Surviving (Kaplan-Meier)");
    EXPECT_EQ(curves.numbers[0].size(), 13U);
    // The curves: a step function per group with both kinds of marks, and the two entries that explain these.
    const auto plot =
        std::ranges::find(host.charts, "Cumulative Proportion Surviving (Kaplan-Meier)", &CChartInfo::title);
    ASSERT_NE(plot, host.charts.end());
    EXPECT_EQ(plot->series.front().legend, "Group  1 (arm = CMF)");
    EXPECT_EQ(plot->series.front().leaving.size(), 5U);
    const auto& complete = plot->series[plot->series.size() - 2];
    const auto& censored = plot->series.back();
    EXPECT_EQ(complete.legend, "Complete");
    EXPECT_EQ(censored.legend, "Censored");
    EXPECT_TRUE(complete.x.empty() && complete.group == ChartSeries::allGroups);
    EXPECT_NE(complete.marker, censored.marker);
    EXPECT_EQ(plot->series[1].marker, complete.marker); // of group 1: the complete ones, then the censored
    EXPECT_EQ(plot->series[1].x, (std::vector<double>{23}));
    EXPECT_EQ(plot->series[2].marker, censored.marker);
    const auto histogram = std::ranges::find(host.charts, "Histogram of Sum Scores", &CChartInfo::title);
    ASSERT_NE(histogram, host.charts.end());
    EXPECT_EQ(histogram->series[0].legend, "Group    1 (CMF)");
    EXPECT_EQ(histogram->series[0].y.size(), 5U);
}

} // namespace
} // namespace ozm::survival
