#include "tests/module/AnalysisFixture.h"

#include "module/resources/Kaplan.h"

#include <cmath>

namespace ozm::survival {
namespace {

using test::KaplanFixture;

TEST_F(KaplanFixture, SummaryListsEveryObservationInTimeOrder) {
    host.columns[1].labels = {{1, "relapsed"}};
    Run();
    EXPECT_TRUE(host.Script().Call("Summary").ok);
    EXPECT_EQ(host.report.substr(0, host.report.find('\n')), "Product-Limit (Kaplan-Meier) Analysis Results");
    for (const char* line :
         {"Variable:    weeks\n", "Variable with censoring indicator:    relapse\n",
          "Total number of valid observations:   21\n", "uncensored:    9\n", "censored:      12\n",
          "Variable with survival times: weeks\n", "1 = relapsed (complete observations)\n"})
        EXPECT_NE(host.report.find(line), std::string::npos) << line << host.report;
    ASSERT_EQ(host.sheets.size(), 2U);
    const test::Sheet& table = host.sheets[1];
    EXPECT_EQ(table.title, "Kaplan-Meier (Product-limit) analysis");
    EXPECT_EQ(table.notes,
              (std::vector<std::string>{"Note: Censored cases are marked with +", "Cases 1 to 21"}));
    ASSERT_EQ(table.headings.size(), 5U); // no column of names where the data name no cases
    EXPECT_EQ(table.headings[2], (std::pair<std::string, std::string>{"Cumulatv", "Survival"}));
    // 6 6 6 6+ 7 9+ 10 10+ ...: an uncensored case comes before a censored one of the same time.
    EXPECT_EQ(std::vector<double>(table.numbers[0].begin(), table.numbers[0].begin() + 8),
              (std::vector<double>{6, 6, 6, 6, 7, 9, 10, 10}));
    EXPECT_EQ(std::vector<std::string>(table.texts[1].begin(), table.texts[1].begin() + 8),
              (std::vector<std::string>{"", "", "", "+", "", "+", "", "+"}));
    EXPECT_TRUE(std::isnan(table.numbers[2][3]));
    EXPECT_NEAR(table.numbers[2][4], .806723, 5e-7);
    EXPECT_EQ(table.numbers[4][3], 4); // the one censored at 6
    // Counts are also cells.
    EXPECT_EQ(host.sheets[0].numbers[0], (std::vector<double>{21, 9, 12}));

    for (int i = 1; i <= 21; ++i)
        host.caseNames.push_back("patient " + std::to_string(i));
    host.Script().Call("Summary");
    EXPECT_EQ(host.sheets[3].texts[5][3], "patient 4");
    EXPECT_EQ(host.sheets[3].ids, (std::vector<std::string>{"time", "censored", "survival", "standardError",
                                                            "caseNumber", "caseName"}));
}

TEST_F(KaplanFixture, ColumnsOfALongTableAreGivenBackOneByOneAsTheyAreCopied) {
    Run();
    const int before = host.outstanding;
    EXPECT_TRUE(host.Script().Call("Summary").ok);
    EXPECT_EQ(host.sheets[1].headings.size(), 5U);
    EXPECT_EQ(host.mostWithCopies, before + 4);
    EXPECT_EQ(host.outstanding, before);
}

TEST_F(KaplanFixture, PercentilesCarryTheirLevelInTheHeadings) {
    Run();
    AutomationObject results = host.Script();
    results.Put("ConfidenceLevel", 0.975);
    EXPECT_TRUE(results.Call("PercentilesOfSurvivalFunction").ok);
    const test::Sheet& sheet = host.sheets.back();
    EXPECT_EQ(sheet.title, "Percentiles of the Survival Function");
    EXPECT_EQ(sheet.rowHeadings[1], "50'th percentile (median) ");
    EXPECT_EQ(sheet.headings[1].first, "97.5% lower");
    EXPECT_NEAR(sheet.numbers[0][1], 22.42, 0.01);
    EXPECT_TRUE(std::isnan(sheet.numbers[0][2])); // not located is empty, not 0
}

TEST_F(KaplanFixture, PlotOneIsAStepWithItsBand) {
    Run();
    host.Script().Call("PlotOfSurvivalTimesVsCumProportionSurviving");
    ASSERT_EQ(host.charts.size(), 1U);
    const CChartInfo& chart = host.charts[0];
    ASSERT_EQ(chart.series.size(), 4U);
    const ChartSeries& estimate = chart.series[0];
    EXPECT_EQ(estimate.style, ChartSeries::Style::Step);
    EXPECT_EQ(estimate.y.front(), 1.0);
    EXPECT_EQ(estimate.x.back(), 35); // runs on to the last censored observation
    EXPECT_NEAR(estimate.y.back(), .448179, 5e-7);
    EXPECT_EQ(estimate.leaving.size(), 21U); // everyone leaves, complete or censored
    EXPECT_EQ(estimate.leaving[6], 10);
    EXPECT_EQ(estimate.staying, 0);
    EXPECT_EQ(chart.series[1].legend, "95% lower");
    // R 4.2, survfit(conf.type = "log-log"): limits at 6 weeks.
    EXPECT_NEAR(chart.series[1].y[3], 0.6197180, 1e-7);
    EXPECT_NEAR(chart.series[2].y[3], 0.9515517, 1e-7);
    EXPECT_EQ(chart.series[3].x.size(), 12U);
    EXPECT_EQ(estimate.legend, "Kaplan-Meier estimate (weeks)");
    EXPECT_EQ(chart.series[3].legend, "Censored (relapse = 0)");
}

TEST_F(KaplanFixture, TheBandGoesAsFarAsTheCurve) {
    for (const double last : {0.0, 1.0}) { // the last observation is censored, or leaves nobody
        host.columns = {{"weeks", {1, 2, 3, 4, 5, 6}}, {"relapse", {1, 1, 0, 1, 1, last}}};
        Run();
        for (const char* plot : {"PlotOfSurvivalTimesVsCumProportionSurviving", "SurvivalCurve"}) {
            host.Script().Call(plot);
            const auto& series = host.charts.back().series;
            for (const std::size_t limit : {1U, 2U}) {
                EXPECT_EQ(series[limit].x.back(), 6) << plot << " " << last;
                EXPECT_EQ(series[limit].y.back(), series[limit].y[series[limit].y.size() - 2]);
            }
        }
        host.Press(analysis, ControlCancel);
    }
}

TEST_F(KaplanFixture, LogarithmicPlotsLeaveOutWhatHasNoLogarithm) {
    host.columns = {{"weeks", {0, 1, 2, 3, 4}}, {"relapse", {1, 1, 1, 1, 1}}};
    Run();
    host.Script().Call("PlotOfLogSurvivalTimesVsCumProportionSurviving");
    host.Script().Call("PlotOfLogSurvivalTimesVsLogCumProportionSurviving");
    ASSERT_EQ(host.charts.size(), 2U);
    EXPECT_EQ(host.charts[0].series[0].x.size(), 4U); // without time 0
    EXPECT_EQ(host.charts[1].series[0].x.size(), 3U); // nor survival 0
    const std::string timeZero = "Uncensored observations left out, as time 0 has no logarithm: 1.";
    EXPECT_EQ(host.charts[0].notes, std::vector<std::string>{timeZero});
    ASSERT_EQ(host.charts[1].notes.size(), 2U);
    EXPECT_EQ(host.charts[1].notes[1],
              "Uncensored observations left out, as survival 0 has no logarithm: 1.");
    EXPECT_DOUBLE_EQ(host.charts[1].series[0].x[1], std::log(2.0));
    EXPECT_DOUBLE_EQ(host.charts[1].series[0].y[1], std::log(0.4));

    host.Press(analysis, ControlCancel);
    host.columns = {{"weeks", {0, 1, 2}}, {"relapse", {1, 1, 1}}};
    host.Press(analysis, ControlOk);
    host.Script().Call("PlotOfLogSurvivalTimesVsLogCumProportionSurviving");
    EXPECT_EQ(host.messages.back().text, " Fewer than 3 valid values.");
}

TEST_F(KaplanFixture, CodesInTheHeaderKeepTheDigitsThatTellThemApart) {
    for (double& code : host.columns[1].values)
        code = code == 1 ? -0.12345678912 : -1234567.891;
    Specify();
    host.Script().Put("CodeForCompleteResponses", -0.12345678912);
    host.Script().Put("CodeForCensoredResponses", -1234567.891);
    host.Press(analysis, ControlOk);
    host.Script().Call("Summary");
    for (const char* line : {"Codes: -0.123457 = -0.12345678912 (complete observations)\n",
                             "      -1234567.9 = -1234567.891 (censored observations)\n"})
        EXPECT_NE(host.report.find(line), std::string::npos) << line << host.report;
}

TEST_F(KaplanFixture, ALevelOutOfRangeIsToldAndReset) {
    Run();
    AutomationObject results = host.Script();
    for (const double level : {1.5, -0.1, test::none}) {
        results.Put("ConfidenceLevel", level);
        // What does not draw the limits' band takes the level as it is.
        for (const char* output :
             {"Summary", "PercentilesOfSurvivalFunction", "PlotOfLogSurvivalTimesVsCumProportionSurviving"})
            EXPECT_EQ(results.Call(output).value, AutomationValue{true}) << output;
        host.charts.clear();
        bool stillShown = false;
        host.whenShown = [&] { stillShown = results.Get("ConfidenceLevel").value != AutomationValue{0.95}; };
        results.Call("PlotOfSurvivalTimesVsCumProportionSurviving");
        host.whenShown = nullptr;
        EXPECT_TRUE(stillShown) << "the message comes before the reset";
        EXPECT_EQ(host.messages.back().id, StrInvalidLevel);
        EXPECT_EQ(results.Get("ConfidenceLevel").value, AutomationValue{0.95});
    }
    EXPECT_TRUE(host.charts.empty());
    for (const double level : {0.0, 1.0, std::nextafter(1.0, 2.0)}) {
        results.Put("ConfidenceLevel", level);
        results.Call("PlotOfSurvivalTimesVsCumProportionSurviving");
    }
    EXPECT_EQ(host.charts.size(), 3U);
}

TEST_F(KaplanFixture, DatesAreNamedInTheHeader) {
    host.columns = {{"from", {10, 10, 10}}, {"to", {15, 16, 17}}, {"relapse", {1, 1, 0}}};
    Specify();
    host.Script().Put("Variables",
                      AutomationValue::List{AutomationValue::List{1, 2}, AutomationValue::List{3}});
    host.Press(analysis, ControlOk);
    host.Script().Call("Summary");
    for (const char* line :
         {"Variable:    number of days computed from data\n",
          "Survival times computed from dates (MM-DD-YY)\nVariables:\n",
          "    from  (beginning of observation)\n    to    (time at termination or censoring)\n"})
        EXPECT_NE(host.report.find(line), std::string::npos) << line << host.report;
}

} // namespace
} // namespace ozm::survival
