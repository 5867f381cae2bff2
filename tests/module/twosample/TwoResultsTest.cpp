#include "tests/module/AnalysisFixture.h"

#include "module/resources/Groups.h"
#include "module/resources/TwoSamples.h"

#include <cmath>

namespace ozm::survival {
namespace {

using test::Sheet;
using test::TwoFixture;

std::size_t Occurrences(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

TEST_F(TwoFixture, TheHeaderStandsOnceAboveTheFirstOutput) {
    Run();
    EXPECT_TRUE(std::get<std::string>(host.Dialog().Value(TwoSummaryBox))
                    .ends_with("Valid observations:  Group 1                    Group 2\n"
                               "Uncensored:      1 ( 20.00%)                5 (100.00%)\n"
                               "  Censored:      4 ( 80.00%)                0 (  0.00%)"));
    host.Script().Call("LogRankTest");
    host.Script().Call("CoxFTest");
    EXPECT_EQ(Occurrences(host.report, "Two-Sample Tests\n"), 1U);
    for (const char* line :
         {"Variable: months\n", "uncensored: 6    censored: 4\n", "Variable with group codes: arm\n",
          "               1 = CMF (Group 1)\n", "Valid observations:        5                        5\n",
          "Uncensored:      1 ( 20.00%)              5 (100.00%)\n"})
        EXPECT_EQ(Occurrences(host.report, line), 1U) << line << host.report;
    // A results dialog opened again begins a new report; shares are those of the group.
    host.Press(analysis, ControlCancel);
    Data({1, 2, 3, 4, 5, 6, 7}, {1, 1, 0, 1, 1, 1, 0}, {1, 1, 1, 2, 2, 2, 2});
    host.Press(analysis, ControlOk);
    host.Script().Call("LogRankTest");
    EXPECT_EQ(Occurrences(host.report, "Two-Sample Tests\n"), 2U);
    for (const char* line : {"Uncensored:      2 ( 66.67%)              3 ( 75.00%)\n",
                             "  Censored:      1 ( 33.33%)              1 ( 25.00%)\n"})
        EXPECT_EQ(Occurrences(host.report, line), 1U) << line << host.report;
}

TEST_F(TwoFixture, ATestShowsItsStatisticsAndItsIntermediateValues) {
    Run();
    host.Script().Call("GehanWilcoxonTest");
    EXPECT_NE(
        host.report.find("Gehan's Wilcoxon Test\nWW = 18   Sum = 208   Var = 57.77778   z = 2.302277   z "
                         "without correction = 2.368057   p = 0.02132\n"
                         "Note: The variance is the permutational one"),
        std::string::npos)
        << host.report;
    EXPECT_NE(host.report.find("continuity correction of 0.5.\n"), std::string::npos);
    const Sheet scores = SheetOf("Gehan's Wilcoxon Test, Scores");
    ASSERT_EQ(scores.headings.size(), 6U);
    EXPECT_EQ(scores.numbers[0][2], 18);
    EXPECT_EQ(scores.numbers[1][3], 0);
    EXPECT_EQ(scores.numbers[5][0], 1 - 10);
    const Sheet statistics = SheetOf("Gehan's Wilcoxon Test, Statistics");
    EXPECT_EQ(statistics.numbers[2][0], static_cast<double>(57.777778F)); // a single-precision number

    host.Script().Call("CoxMantelTest");
    EXPECT_NE(host.report.find("Note: The variance is the hypergeometric one"), std::string::npos);
    const Sheet failures = SheetOf("Cox-Mantel Test, Failure Times");
    ASSERT_EQ(failures.numbers[0].size(), 6U); // five times, and what survives them
    EXPECT_TRUE(std::isnan(failures.numbers[0][5]));
    EXPECT_EQ(failures.numbers[4][5],
              static_cast<double>(static_cast<float>(.9 * .875 * (4. / 6) * .75 * .5)));
    EXPECT_EQ(failures.numbers[5][1], 4);
}

TEST_F(TwoFixture, TheSummarySetsTheTestsSideBySide) {
    Run();
    host.Script().Call("Summary");
    const Sheet sheet = SheetOf("Summary of the Two-Sample Tests");
    EXPECT_EQ(sheet.rowHeadings,
              (std::vector<std::string>{"Gehan's Wilcoxon Test", "Cox's F-Test", "Cox-Mantel Test",
                                        "Log-Rank Test", "Peto & Peto's Wilcoxon Test"}));
    EXPECT_GT(sheet.numbers[0][0], 0);
    EXPECT_LT(sheet.numbers[0][3], 0);
    EXPECT_EQ(sheet.notes.size(), 4U);
    EXPECT_EQ(sheet.numbers[1][1], 2); // group 1, with one failure, has the greater mean
    EXPECT_TRUE(std::isnan(sheet.numbers[1][2]));
    EXPECT_EQ(sheet.texts[6], (std::vector<std::string>{"permutational", "", "hypergeometric",
                                                        "permutational", "permutational"}));
    EXPECT_EQ(sheet.ids,
              (std::vector<std::string>{"statistic", "df1", "df2", "p", "sum", "variance", "varianceForm"}));
}

TEST_F(TwoFixture, CoxFThatCannotBeComputedSaysSo) {
    Data({1, 2, 3, 4}, {1, 1, 1, 0}, {1, 2, 1, 2});
    Run();
    host.Script().Call("CoxFTest");
    EXPECT_NE(host.report.find("Cox's F-Test\n This test cannot be computed. \n"), std::string::npos)
        << host.report;
    EXPECT_TRUE(host.sheets.empty());
    host.Script().Call("Summary");
    EXPECT_TRUE(std::isnan(host.sheets[0].numbers[0][1]));
    EXPECT_TRUE(std::isnan(host.sheets[0].numbers[3][1]));
    EXPECT_EQ(host.sheets[0].notes.back(), "Cox's F-Test: This test cannot be computed. ");
    EXPECT_TRUE(host.messages.empty());

    // Nor without memory, be it for its scores or for the failure times.
    host.Press(analysis, ControlCancel);
    Data({1, 2, 3, 4}, {1, 1, 1, 1}, {1, 2, 1, 2});
    Run();
    for (const int request : {1, 2}) {
        host.report.clear();
        host.refuseRequest = host.requests + request;
        host.Script().Call("CoxFTest");
        EXPECT_NE(host.report.find(" This test cannot be computed. "), std::string::npos) << request;
        EXPECT_TRUE(host.messages.empty());
    }
}

TEST_F(TwoFixture, WithoutCensoringPetoAndPetoIsGehan) {
    host.columns[1].values.assign(11, 1.0);
    Run();
    host.Script().Call("GehanWilcoxonTest");
    host.Script().Call("PetoPetoWilcoxonTest");
    EXPECT_EQ(SheetOf("Peto & Peto's Wilcoxon Test, Statistics").numbers,
              SheetOf("Gehan's Wilcoxon Test, Statistics").numbers);
    EXPECT_EQ(SheetOf("Peto & Peto's Wilcoxon Test, Scores").numbers,
              SheetOf("Gehan's Wilcoxon Test, Scores").numbers);
    EXPECT_EQ(Occurrences(host.report, "No observation is censored"), 1U);
    EXPECT_EQ(Occurrences(host.report, "continuity correction of 1.\n"), 2U);
}

TEST_F(TwoFixture, SmallProbabilitiesAreNotPrintedAsZero) {
    // Group 1 outlives group 2 throughout: z beyond any tail.
    ManyCases(1000);
    for (std::size_t i = 0; i < 1000; ++i)
        host.columns[0].values[i] = host.columns[2].values[i] == 1 ? 1001 : static_cast<double>(i);
    Run();
    host.Script().Call("LogRankTest");
    EXPECT_NE(host.report.find("p < 1e-30\n"), std::string::npos) << host.report;
}

TEST_F(TwoFixture, LifeTablesShareTheirIntervals) {
    Run();
    host.Script().Call("ProportionSurvivingByGroup");
    ASSERT_EQ(host.sheets.size(), 1U);
    const Sheet& sheet = host.sheets[0];
    EXPECT_EQ(sheet.title, "Life Table for Group 1 and Group 2");
    EXPECT_EQ(sheet.notes[0], "Group 1: Code 1 (CMF)    Group 2: Code 2 (control)");
    ASSERT_EQ(sheet.headings.size(), 11U);
    EXPECT_EQ(sheet.headings[0], (std::pair<std::string, std::string>{"Lower   ", "Limit   "}));
    EXPECT_EQ(sheet.headings[10], (std::pair<std::string, std::string>{"Group 2:", "Cum.%.Sr"}));
    // By hand: 24/11 wide; 15 and 16 fall into 13.09 to 15.27 and 15.27 to 17.45.
    ASSERT_EQ(sheet.numbers[0].size(), 12U);
    EXPECT_DOUBLE_EQ(sheet.numbers[0][11], 24);
    EXPECT_EQ(sheet.numbers[1][0], 5);
    EXPECT_EQ(sheet.numbers[6][6], 1);         // 15, of group 2
    EXPECT_EQ(sheet.numbers[3][7], 1);         // 16+, of group 1
    EXPECT_DOUBLE_EQ(sheet.numbers[8][6], 80); // one of five dies
    EXPECT_DOUBLE_EQ(sheet.numbers[7][0], 90); // nobody: half a death among five
    EXPECT_DOUBLE_EQ(sheet.numbers[10][7], 100 * std::pow(.9, 6) * .8);
    EXPECT_EQ(sheet.numbers[2][10], 0); // group 2 has run out
    EXPECT_TRUE(std::isnan(sheet.numbers[2][11]));
    EXPECT_TRUE(std::isnan(sheet.numbers[10][11]));
}

TEST_F(TwoFixture, PlotsShowALinePerGroup) {
    Run();
    host.Script().Call("PlotOfProportionSurvivingByGroup");
    host.Script().Call("CumulativeProportionSurvivingByGroup");
    ASSERT_EQ(host.charts.size(), 2U);
    EXPECT_EQ(host.charts[0].title, "Survivorship: Proportion Surviving");
    EXPECT_EQ(host.charts[1].yAxis.title, "Cumulative Proportion Surviving");
    EXPECT_EQ(host.charts[0].xAxis.title, "Interval Start");
    const auto& series = host.charts[1].series;
    ASSERT_EQ(series.size(), 2U);
    EXPECT_EQ(series[1].legend, "Group  2 (arm = control)");
    EXPECT_EQ(series[0].x.size(), 12U);
    EXPECT_EQ(series[1].x.size(), 11U); // to the row that nobody enters
    EXPECT_EQ(host.charts[0].series[1].x.size(), 10U);
    EXPECT_EQ(series[1].leaving, (std::vector<double>{15, 18, 19, 19, 20}));
    EXPECT_EQ(host.statusTexts[host.statusTexts.size() - 2], " Computing cumulative survival...");
    // Codes without labels still belong to a variable.
    host.columns[2].labels = {};
    host.Script().Call("PlotOfProportionSurvivingByGroup");
    EXPECT_EQ(host.charts[2].series[0].legend, "Group  1 (arm = 1)");
}

TEST_F(TwoFixture, GroupsTooSmallForALifeTable) {
    Data({1, 2, 3, 4, 5}, {1, 1, 1, 0, 1}, {1, 2, 1, 1, 2});
    Run();
    host.Script().Call("ProportionSurvivingByGroup");
    EXPECT_EQ(host.sheets[0].notes.back(), "Group 2: Fewer than 3 valid cases.  ");
    EXPECT_TRUE(std::isnan(host.sheets[0].numbers[2][0]));
    EXPECT_EQ(host.sheets[0].numbers[1][0], 3);
    host.Script().Call("PlotOfProportionSurvivingByGroup");
    EXPECT_EQ(host.charts[0].series.size(), 1U);
    host.Press(analysis, ControlCancel);
    Data({0, 0, 0, 0, 0, 0}, {1, 1, 1, 0, 1, 1}, {1, 2, 1, 1, 2, 2});
    Run();
    host.Script().Call("CumulativeProportionSurvivingByGroup");
    EXPECT_EQ(host.messages.back().id, StrLtNoWidth);
    EXPECT_TRUE(host.messages.back().detail.ends_with(
        "\nThe largest survival time is 0 (from 'months'): it cannot be "
        "divided into intervals."));
}

} // namespace
} // namespace ozm::survival
