// What the outputs of life tables hold.

#include "module/lifetable/FitEstimates.h"
#include "module/lifetable/NumberList.h"
#include "module/survdata/NormalQuantile.h"
#include "tests/module/AnalysisFixture.h"

#include <algorithm>
#include <cmath>

namespace ozm::survival {
namespace {

using Strings = std::vector<std::string>;
using test::LifeFixture;
using test::none;
using test::Sheet;

const std::vector<double>& CellsOf(const Sheet& sheet, const std::string& id) {
    const auto found = std::ranges::find(sheet.ids, id);
    if (found == sheet.ids.end()) throw std::runtime_error("no column " + id + " in " + sheet.title);
    return sheet.numbers[static_cast<std::size_t>(found - sheet.ids.begin())];
}

const Strings& WordsOf(const Sheet& sheet, const std::string& id) {
    const auto found = std::ranges::find(sheet.ids, id);
    if (found == sheet.ids.end()) throw std::runtime_error("no column " + id + " in " + sheet.title);
    return sheet.texts[static_cast<std::size_t>(found - sheet.ids.begin())];
}

bool Mentions(const Strings& notes, std::string_view text) {
    return std::ranges::any_of(notes,
                               [text](const std::string& n) { return n.find(text) != std::string::npos; });
}

/// The rows of a table as input, small enough to be put down.
class LifeOutputs : public LifeFixture {
protected:
    LifeOutputs() : LifeFixture(test::lifeOfTable) {}
    void RunTable(std::vector<double> lower, std::vector<double> withdrawn, std::vector<double> dying,
                  bool correct = false) {
        host.columns[0].values = std::move(lower);
        host.columns[1].values = std::move(withdrawn);
        host.columns[2].values = std::move(dying);
        Specify();
        host.Script().Put("CorrectIntervalsContainingNoTerminations", correct);
        ASSERT_EQ(host.Press(analysis, ControlOk), StepLifeResults);
    }
    bool Make(const char* output) {
        host.messages.clear();
        return host.Script().Call(output).value == AutomationValue{true};
    }
    [[nodiscard]] const CChartInfo& ChartOf(const std::string& title) const {
        const auto found = std::ranges::find(host.charts, title, &CChartInfo::title);
        if (found == host.charts.end()) throw std::runtime_error("no chart " + title);
        return *found;
    }
};

TEST_F(LifeOutputs, TheLifeTableHasAllColumnsAndTheOpenRowOnlySomeOfThem) {
    // By hand: 20 enter, 4 die and 2 are withdrawn of 19; then 4 of 14 die, so that P = 15/19, 75/133.
    RunTable({0, 2, 5}, {2, 0, 10}, {4, 4, 0});
    ASSERT_TRUE(Make("Summary"));
    for (const char* line :
         {"Life Table & Survival Time Distribution Results \n",
          "Variables:  Lower limits for intervals: year\n", "Number withdrawn (censored): withdrawn\n",
          "Number dying: died\n", "Total number of valid observations: 20\n",
          "uncensored: 8    censored: 12\n", "Input data is a table of survival times\n"})
        EXPECT_NE(host.report.find(line), std::string::npos) << line << host.report;
    const Sheet table = SheetOf("Life Table");
    EXPECT_EQ(table.ids, (Strings{"interval", "start", "midpoint", "width", "entering", "withdrawn",
                                  "exposed", "dying", "proportionDead", "proportionSurviving",
                                  "cumulativeSurviving", "density", "hazard", "survivingError",
                                  "densityError", "hazardError", "median", "medianBeyond", "medianError"}));
    EXPECT_EQ(table.headings[2], (std::pair<std::string, std::string>{" Mid    ", "Point   "}));
    EXPECT_EQ(table.headings[10], (std::pair<std::string, std::string>{"Cum.Prop", "Survivng"}));
    const struct {
        const char* id;
        std::vector<double> cells;
    } expected[] = {
        {"interval", {1, 2, 3}},
        {"start", {0, 2, 5}},
        {"midpoint", {1, 3.5, none}},
        {"width", {2, 3, none}},
        {"entering", {20, 14, 10}},
        {"exposed", {19, 14, 5}},
        {"proportionDead", {4. / 19, 4. / 14, 0}},
        {"cumulativeSurviving", {1, 15. / 19, 75. / 133}},
        {"density", {2. / 19, 10. / 133, none}},
        {"hazard", {8. / 19 / (34. / 19 * 2), 8. / 14 / (24. / 14 * 3), none}},
        {"survivingError", {0, 15. / 19 * std::sqrt(4. / 285), 75. / 133 * std::sqrt(4. / 285 + 2. / 70)}},
        {"median", {5, 3, none}},
        {"medianError", {0, 0, none}}};
    for (const auto& [id, cells] : expected)
        for (std::size_t i = 0; i < 3; ++i) {
            const double cell = CellsOf(table, id)[i];
            if (std::isnan(cells[i]))
                EXPECT_TRUE(std::isnan(cell)) << id << i;
            else
                EXPECT_NEAR(cell, cells[i], 1e-12) << id << i;
        }
    for (const char* id : {"density", "hazard", "densityError", "hazardError", "median", "medianError"})
        EXPECT_TRUE(std::isnan(CellsOf(table, id)[2])) << id;
    EXPECT_EQ(WordsOf(table, "medianBeyond"), (Strings{"+", "+", ""})); // survival ends above half
    EXPECT_TRUE(table.notes[0].starts_with("Log-Likelihood for data: -")) << table.notes[0];
    EXPECT_TRUE(Mentions(table.notes, "Note: + marks"));
    EXPECT_FALSE(Mentions(table.notes, "half a death"));
    // What is corrected, and what cannot be computed: nobody dies in the second interval.
    host.sheets.clear();
    RunTable({0, 1, 2, 3}, {0, 0, 0, 0}, {30, 0, 30, 0}, true);
    Make("Summary");
    EXPECT_TRUE(Mentions(SheetOf("Life Table").notes, "half a death"));
}

TEST_F(LifeFixture, TheHeaderNamesTheVariablesOfCases) {
    ASSERT_EQ(Run(), StepLifeResults);
    EXPECT_TRUE(host.Script().Call("Summary").ok);
    for (const char* line : {"Variable: weeks\n", "Variable with censoring indicator: relapse\n",
                             "uncensored: 9    censored: 12\n", "Variable with survival times: weeks\n"})
        EXPECT_NE(host.report.find(line), std::string::npos) << line << host.report;
    EXPECT_NE(std::get<std::string>(host.Dialog().Value(LifeSummaryBox)).find("\nVariable: weeks\n"),
              std::string::npos);
}

/// All outputs of the fits against the fits, with inadequate ones among them or not.
TEST_F(LifeOutputs, FitsThatAreInadequateAreLeftOutEverywhereAndSaidToBe) {
    const struct {
        const char* what;
        std::vector<double> lower, withdrawn, dying;
        bool someInadequate;
    } tables[] = {
        {"angina", of.columns[0].values, of.columns[1].values, of.columns[2].values, false},
        // The hazard falls fast at first: a line falls below 0.
        {"falling", {0, 1, 2, 3, 4, 5, 6}, {0, 0, 0, 0, 0, 0, 1500}, {1000, 40, 20, 8, 4, 1, 0}, true},
        // The exponential curve of the early hazards reaches 0: its hazard is there, but of no use.
        {"long", {0, 1, 2, 3000}, {0, 0, 0, 30}, {50, 30, 20, 0}, true}};
    for (const auto& table : tables) {
        SCOPED_TRACE(table.what);
        RunTable(table.lower, table.withdrawn, table.dying);
        const LifeResults& results = State().results;
        EXPECT_EQ(results.fits.AnyInadequate(), table.someInadequate);
        ASSERT_TRUE(results.fits.AnyShown());
        for (int model = 1; model <= 4; ++model) {
            host.sheets.clear();
            host.charts.clear();
            const auto family = static_cast<Distribution>(model - 1);
            const auto& fits = results.fits.fits[static_cast<std::size_t>(model - 1)];
            std::vector<double> shown;
            for (std::size_t w = 0; w < weightings; ++w)
                if (fits[w].IsShown()) shown.push_back(static_cast<double>(w + 1));
            const std::string name[] = {"Exponential", "Linear Hazard", "Gompertz", "Weibull"};
            const std::string& is = name[model - 1];
            host.Script().Put("Distribution", model);
            Make("ParameterEstimates");
            const auto parameters =
                std::ranges::find(host.sheets, "Parameter Estimates, Model: " + is, &Sheet::title);
            ASSERT_EQ(parameters != host.sheets.end(), !shown.empty()) << is;
            EXPECT_EQ(Mentions(host.sheets.front().notes, "At least one model is inadequate"),
                      table.someInadequate);
            if (shown.empty()) {
                EXPECT_TRUE(Mentions(host.sheets.front().notes, is + ", weight 1: "));
                ASSERT_FALSE(Make("HazardFunction"));
                EXPECT_EQ(host.messages[0].id, StrLifeNoFits);
                EXPECT_NE(host.messages[0].detail.find(is + ", weight 3: "), std::string::npos);
                ASSERT_FALSE(Make("PlotOfHazardFunction"));
                EXPECT_EQ(host.messages[0].id, StrLifeNoFits);
                continue;
            }
            EXPECT_EQ(parameters->notes[0], "Note: Weights: 1=1., 2=1./V, 3=N(I)*H(I)");
            EXPECT_EQ(CellsOf(*parameters, "method"), shown);
            EXPECT_EQ(parameters->ids.size(), model == 1 ? 8U : 12U);
            for (std::size_t row = 0; row < shown.size(); ++row) {
                const DistributionFit& fit = fits[static_cast<std::size_t>(shown[row]) - 1];
                EXPECT_EQ(CellsOf(*parameters, "lambda")[row], fit.parameters.lambda);
                EXPECT_EQ(CellsOf(*parameters, "lambdaError")[row], std::sqrt(fit.lambdaVariance));
                EXPECT_EQ(CellsOf(*parameters, "logLikelihood")[row], fit.logLikelihood);
                const GoodnessOfFit test = TestFit(fit, family, results.table, results.logLikelihood);
                EXPECT_EQ(CellsOf(*parameters, "chiSquare")[row], test.chiSquare);
                EXPECT_EQ(CellsOf(*parameters, "df")[row], results.table.rows - 1 - (model == 1 ? 1 : 2));
                EXPECT_EQ(CellsOf(*parameters, "p")[row], test.p);
                if (model == 1) continue;
                EXPECT_EQ(CellsOf(*parameters, "gammaVariance")[row], fit.gammaVariance);
                EXPECT_EQ(CellsOf(*parameters, "covariance")[row], fit.covariance);
            }
            for (const char* output :
                 {"HazardFunction", "SurvivalFunction", "ProbabilityDensityFunction", "PlotOfHazardFunction",
                  "PlotOfSurvivalFunction", "PlotOfProbabilityDensityFunction"})
                ASSERT_TRUE(Make(output)) << is << output;
            const struct {
                std::string sheet, chart, observed;
                IntervalColumn LifeTable::*of;
                IntervalColumn DistributionFit::*fitted;
                std::size_t values;
            } functions[] = {{"Estimates of Hazard Function, Model: ",
                              "LS Estimates of Hazard Function Model: ", "Observed Hazard Rates",
                              &LifeTable::hazard, &DistributionFit::hazard, results.table.Closed()},
                             {"Estimates of Survival Function; Model: ",
                              "LS Estimates of Survival Function Model: ", "Observed Survival Function",
                              &LifeTable::cumulativeSurviving, &DistributionFit::survival,
                              results.table.Rows()},
                             {"Estimates of Prob. Density Function; Model: ",
                              "LS Estimates of Probability Density Model: ", "Observed Probability Density",
                              &LifeTable::density, &DistributionFit::density, results.table.Closed()}};
            for (const auto& function : functions) {
                const Sheet sheet = SheetOf(function.sheet + is);
                const CChartInfo& chart = ChartOf(function.chart + is);
                ASSERT_EQ(chart.series.size(), shown.size() + 1);
                EXPECT_EQ(chart.series[0].legend, function.observed);
                EXPECT_EQ(chart.series[0].x.size(), function.values);
                std::size_t drawn = 0;
                for (std::size_t w = 0; w < weightings; ++w) {
                    const std::string weight = std::to_string(w + 1);
                    const std::vector<double>& cells = CellsOf(sheet, "weight" + weight);
                    EXPECT_EQ(cells.size(), results.table.Rows());
                    const IntervalColumn& values = fits[w].*function.fitted;
                    const bool left = !fits[w].IsShown();
                    EXPECT_EQ(Mentions(sheet.notes, is + ", weight " + weight + ": "), left);
                    EXPECT_EQ(Mentions(chart.notes, is + ", weight " + weight + ": "), left);
                    for (std::size_t i = 0; i < function.values; ++i)
                        if (left)
                            EXPECT_TRUE(std::isnan(cells[i]));
                        else
                            EXPECT_EQ(cells[i], values[i]);
                    if (left) continue;
                    const ChartSeries& series = chart.series[++drawn];
                    EXPECT_EQ(series.legend, "Weight " + weight);
                    EXPECT_EQ(series.group, static_cast<int>(w) + 1) << "the colour of a weighting";
                    EXPECT_TRUE(std::equal(series.y.begin(), series.y.end(), values.begin()));
                }
                const IntervalColumn& observed = results.table.*function.of;
                EXPECT_TRUE(std::equal(chart.series[0].y.begin(), chart.series[0].y.end(), observed.begin()));
            }
        }
    }
}

TEST_F(LifeOutputs, TheRankingHasAllTwelveFits) {
    RunTable({0, 1, 2, 3, 4, 5, 6}, {0, 0, 0, 0, 0, 0, 1500}, {1000, 40, 20, 8, 4, 1, 0});
    ASSERT_TRUE(Make("RankingOfFits"));
    const Sheet ranking = SheetOf("Ranking of the Fits by Akaike's Criterion");
    ASSERT_EQ(ranking.numbers[0].size(), 12U);
    const std::vector<double>& akaike = CellsOf(ranking, "akaike");
    const Strings& adequate = WordsOf(ranking, "adequate");
    const auto last = static_cast<std::size_t>(std::ranges::count(adequate, "yes"));
    ASSERT_TRUE(last > 1 && last < 12) << last;
    EXPECT_TRUE(std::is_sorted(akaike.begin(), akaike.begin() + static_cast<std::ptrdiff_t>(last)));
    for (std::size_t i = 0; i < 12; ++i) {
        EXPECT_EQ(WordsOf(ranking, "whyNot")[i].empty(), i < last);
        EXPECT_EQ(std::isfinite(akaike[i]), i < last);
        EXPECT_EQ(std::isfinite(CellsOf(ranking, "rank")[i]), i < last);
        if (i >= last) continue;
        const int parameters = WordsOf(ranking, "model")[i] == "Exponential" ? 1 : 2;
        EXPECT_NEAR(akaike[i], 2 * parameters - 2 * CellsOf(ranking, "logLikelihood")[i], 1e-9);
    }
}

TEST_F(LifeOutputs, AllModelsOfAWeightingStandBesideTheObservedSurvival) {
    RunTable(of.columns[0].values, of.columns[1].values, of.columns[2].values);
    for (const int weighting : {1, 3}) {
        host.Script().Put("Weighting", weighting);
        ASSERT_TRUE(Make("PlotOfAllModels"));
        const CChartInfo& chart = ChartOf("Fitted Survival Functions, Weight " + std::to_string(weighting));
        ASSERT_EQ(chart.series.size(), 5U);
        EXPECT_EQ(chart.series[0].legend, "Observed");
        EXPECT_NE(chart.series[0].marker, chart.series[1].marker);
        EXPECT_EQ(chart.series[4].legend, "Weibull");
        const DistributionFit& fit =
            State().results.fits.Of(Distribution::Weibull, static_cast<std::size_t>(weighting) - 1);
        EXPECT_EQ(chart.series[4].y.back(), fit.survival[15]);
        // The numbers at risk are those that enter the intervals.
        const std::vector<double>& atRisk = chart.series[0].atRisk;
        const LifeTable& table = State().results.table;
        EXPECT_TRUE(std::equal(atRisk.begin(), atRisk.end(), table.entering.begin(),
                               table.entering.begin() + table.rows));
    }
}

TEST_F(LifeOutputs, WhatTheFittingStoppedBeforeIsMissingAndTheReasonGiven) {
    RunTable({0, 1, 2, 3}, {0, 0, 0, 20}, {10, 0, 10, 0}); // no variance in the second interval
    ASSERT_EQ(host.messages.size(), 1U);
    EXPECT_EQ(host.messages[0].id, StrLifeInadequate);
    EXPECT_EQ(host.messages[0].detail,
              "No model can be fitted: the hazard of the interval from 1 has no variance.");
    EXPECT_TRUE(Make("Summary"));
    EXPECT_TRUE(Make("RankingOfFits"));
    EXPECT_EQ(std::ranges::count(WordsOf(host.sheets.back(), "adequate"), "no"), 12);
    for (const char* output : {"ParameterEstimates", "SurvivalFunction", "PlotOfSurvivalFunction",
                               "PlotOfAllModels", "SurvivalTimes", "SurvivalAtTimes"}) {
        ASSERT_FALSE(Make(output)) << output;
        ASSERT_EQ(host.messages.size(), 1U);
        EXPECT_EQ(host.messages[0].id, StrLifeNoFits) << output;
        EXPECT_NE(host.messages[0].detail.find("the interval from 1 has no variance."), std::string::npos);
    }
}

TEST_F(LifeOutputs, FewerThanThreeValuesAreNotPlotted) {
    RunTable({0, 1, 2}, {0, 0, 10}, {4, 3, 0}); // two closed intervals
    for (const char* output : {"PlotOfHazardFunction", "PlotOfProbabilityDensityFunction"}) {
        EXPECT_FALSE(Make(output));
        EXPECT_EQ(host.messages.back().id, StrLifeFewerThan3Values);
    }
    EXPECT_TRUE(Make("PlotOfSurvivalFunction"));
    EXPECT_EQ(host.charts.back().series[0].x, (std::vector<double>{0, 1, 2}));
}

TEST_F(LifeOutputs, TimesAndProportionsBelongToEachOther) {
    RunTable(of.columns[0].values, of.columns[1].values, of.columns[2].values);
    host.Script().Put("ProportionsSurviving", ".9, 0.5 .1");
    host.Script().Put("ConfidenceLevel", 0.9);
    ASSERT_TRUE(Make("SurvivalTimes"));
    const Sheet times = SheetOf("Survival Times by Proportion Surviving");
    EXPECT_EQ(times.ids,
              (Strings{"model", "weight", "surviving", "time", "standardError", "lowerLimit", "upperLimit"}));
    EXPECT_EQ(times.headings[5].first, "90% lower");
    EXPECT_EQ(times.headings[6].first, "90% upper");
    ASSERT_EQ(times.numbers[1].size(), 36U);
    const double z = ConfidenceZ(0.9);
    for (std::size_t i = 0; i < 36; ++i) {
        const double time = CellsOf(times, "time")[i];
        const auto family = static_cast<Distribution>(i / 9);
        const DistributionFit& fit = State().results.fits.Of(family, i / 3 % 3);
        const EstimateWithLimits there = SurvivalWithLimits(family, fit, time, z);
        EXPECT_NEAR(there.value, (std::array{.9, .5, .1}[i % 3]), 1e-9) << i;
        EXPECT_LT(CellsOf(times, "lowerLimit")[i], time);
        EXPECT_GT(CellsOf(times, "upperLimit")[i], time);
    }
    host.Script().Put("Times", "0;2.5\t10");
    ASSERT_TRUE(Make("SurvivalAtTimes"));
    const Sheet at = SheetOf("Survival at Given Times");
    EXPECT_EQ(at.ids,
              (Strings{"model", "weight", "time", "surviving", "standardError", "lowerLimit", "upperLimit"}));
    const EstimateWithLimits weibull =
        SurvivalWithLimits(Distribution::Weibull, State().results.fits.Of(Distribution::Weibull, 2), 10.0, z);
    EXPECT_EQ(CellsOf(at, "time").back(), 10.0);
    EXPECT_EQ(CellsOf(at, "surviving").back(), weibull.value);
    EXPECT_EQ(CellsOf(at, "upperLimit").back(), weibull.upper);
    EXPECT_EQ(CellsOf(at, "surviving").front(), 1.0);
    // Of no numbers: quartiles, and the starts of the intervals.
    host.sheets.clear();
    host.Script().Put("ProportionsSurviving", " ");
    host.Script().Put("Times", "");
    ASSERT_TRUE(Make("SurvivalTimes") && Make("SurvivalAtTimes"));
    EXPECT_EQ(CellsOf(host.sheets[0], "surviving")[2], 0.25);
    EXPECT_EQ(CellsOf(host.sheets[1], "time")[14], 15.0);
    EXPECT_EQ(CellsOf(host.sheets[1], "time")[15], 1.0);
}

TEST_F(LifeOutputs, AWordThatIsNoSuchNumberIsNamed) {
    RunTable(of.columns[0].values, of.columns[1].values, of.columns[2].values);
    for (const auto& [text, bad] :
         std::initializer_list<std::pair<const char*, std::string>>{{".5 half", "half"},
                                                                    {"0.5,1", "1"},
                                                                    {"0", "0"},
                                                                    {"50%", "50%"},
                                                                    {"nan", "nan"},
                                                                    {"0x1", "0x1"}}) {
        host.Script().Put("ProportionsSurviving", text);
        EXPECT_FALSE(Make("SurvivalTimes")) << text;
        EXPECT_EQ(host.messages.back().id, StrLifeBadNumbers);
        EXPECT_NE(host.messages.back().detail.find("'" + bad + "' is no proportion"), std::string::npos)
            << host.messages.back().detail;
    }
    for (const char* bad : {"-1", "inf", "1e999"}) {
        host.Script().Put("Times", std::string{"1 "} + bad);
        EXPECT_FALSE(Make("SurvivalAtTimes")) << bad;
        EXPECT_NE(host.messages.back().detail.find("'" + std::string{bad} + "' is no time"),
                  std::string::npos);
    }
    for (const double level : {0.0, 1.0, none})
        EXPECT_FALSE(host.Script().Put("ConfidenceLevel", level).ok);
}

} // namespace
} // namespace ozm::survival
