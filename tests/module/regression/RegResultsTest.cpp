// The outputs of the Cox regression: that spreadsheets and charts show the numbers of an independent program
// where they belong, what becomes of those that cannot be computed, and what is refused.

#include "tests/module/regression/RegResultsFixture.h"

#include "module/resources/Resources.h"
#include "module/survdata/ReportLines.h"

#include <functional>
#include <set>

namespace ozm::survival {
namespace {

using test::none;

class RegResults : public RegResultsFixture {
protected:
    using Ours = std::function<double(const std::string& of, std::size_t row)>;

    /// Every golden value of a quantity agrees with a cell.
    void Agree(const std::string& run, const std::string& quantity, const Ours& ours,
               double precision = 1e-6) {
        const auto golden =
            GoldenCox().where("dataset", dataset_).where("run", run).where("quantity", quantity);
        const auto of = golden.texts("of");
        const Values rows = golden.numbers("row");
        const Values values = golden.numbers("value");
        EXPECT_GT(values.size(), 0U) << quantity;
        for (std::size_t i = 0; i < values.size(); ++i)
            EXPECT_NEAR(ours(of[i], static_cast<std::size_t>(rows[i])), values[i],
                        precision * std::max(1.0, std::abs(values[i])))
                << dataset_ << " " << quantity << " " << of[i] << " " << rows[i];
    }
    /// The cells of a column by the covariate that the golden file names.
    Ours ByName(const std::string& title, const std::string& id) {
        const test::Sheet& sheet = SheetOf(title);
        return [&sheet, id](const std::string& of, std::size_t) { return Cell(sheet, of, id); };
    }
    Ours At(const std::string& title, const std::string& row, const std::string& id) {
        const double cell = Cell(SheetOf(title), row, id);
        return [cell](const std::string&, std::size_t) { return cell; };
    }
    void OpenGolden(const std::string& dataset) {
        dataset_ = dataset;
        host.sheets.clear();
        host.charts.clear();
        host.report.clear();
        Open(CasesNamed(dataset));
    }
    std::string dataset_;
};

TEST_F(RegResults, SheetsShowTheNumbersOfAnIndependentProgram) {
    for (const char* dataset :
         {"hand", "leukaemia-wbc", "aml", "veteran", "veteran-strata", "tied", "larger", "larger-strata"}) {
        SCOPED_TRACE(dataset);
        OpenGolden(dataset);
        ASSERT_TRUE(Make("Summary"));
        Agree("", "beta", ByName("Parameter Estimates", "beta"));
        Agree("", "se", ByName("Parameter Estimates", "standardError"));
        Agree("", "lr_chisq",
              At("Tests of the Model", "Likelihood ratio (null model - final solution)", "chiSquare"));
        Agree("", "lr_p", At("Tests of the Model", "Likelihood ratio (null model - final solution)", "p"));
        Agree("", "score_chisq", At("Tests of the Model", "Score test", "chiSquare"));
        Agree("", "score_p", At("Tests of the Model", "Score test", "p"));
        Agree("", "wald_chisq", At("Tests of the Model", "Wald test", "chiSquare"));
        Agree("", "wald_p", At("Tests of the Model", "Wald test", "p"));
        Agree("", "loglik", At("Fit of the Model", "Log-likelihood of final solution", "value"));
        Agree("", "loglik_null", At("Fit of the Model", "Log-likelihood of null model", "value"));
        Agree("", "concordance", At("Fit of the Model", "Harrell's concordance", "value"));
        Agree("", "se_concordance", At("Fit of the Model", "Standard error of concordance", "value"));
        Agree("", "events", At("Fit of the Model", "Uncensored", "value"));

        ASSERT_TRUE(Make("ParameterCovariancesCorrelations"));
        const test::Sheet& covariances = SheetOf("Covariances of Parameter Estimates");
        Agree("", "covariance", [&](const std::string& of, std::size_t row) {
            return covariances.numbers.at(PlaceOf(Results().names, of)).at(row - 1);
        });
        const test::Sheet& correlations = SheetOf("Correlations of Parameter Estimates");
        EXPECT_EQ(correlations.headings.back().first, Results().names.back());
        Agree("", "covariance", [&](const std::string& of, std::size_t row) {
            const std::size_t k = PlaceOf(Results().names, of);
            const Values& errors = Column(SheetOf("Parameter Estimates"), "standardError");
            return correlations.numbers[k][row - 1] * errors[k] * errors[row - 1];
        });
        ASSERT_TRUE(Make("MeansAndStandardDeviations"));
        Agree("", "mean", ByName("Means and Standard Deviations", "mean"));
        Agree("", "sd", ByName("Means and Standard Deviations", "standardDeviation"));

        ASSERT_TRUE(Make("ProportionalHazardsTest"));
        Agree("", "ph_rho", ByName("Test of Proportional Hazards", "correlation"));
        Agree("", "ph_chisq", ByName("Test of Proportional Hazards", "chiSquare"), 1e-5);
        Agree("", "ph_overall_p", At("Test of Proportional Hazards", "All together", "p"), 1e-5);
        ASSERT_TRUE(Make("Residuals"));
        const test::Sheet& residuals = SheetOf("Residuals");
        const auto byCase = [&](const char* id) {
            return [&residuals, id](const std::string&, std::size_t row) {
                EXPECT_EQ(Column(residuals, "caseNumber").at(row - 1), row);
                return Column(residuals, id).at(row - 1);
            };
        };
        Agree("", "martingale", byCase("martingale"));
        Agree("", "deviance", byCase("deviance"), 1e-5);
        Agree("", "linear_predictor", byCase("linearPredictor"), 1e-5);

        ASSERT_TRUE(Make("ScaledSchoenfeldResiduals"));
        const test::Sheet& schoenfeld = SheetOf("Scaled Schoenfeld Residuals");
        const Values& ranks = Column(schoenfeld, "rank");
        EXPECT_TRUE(std::ranges::is_sorted(ranks));
        const auto caseOf = GoldenCox().where("dataset", dataset).where("quantity", "schoenfeld_case");
        const Values goldenRows = caseOf.numbers("row");
        const Values goldenCases = caseOf.numbers("value");
        Agree(
            "", "scaled_schoenfeld",
            [&](const std::string& of, std::size_t row) {
                const auto at = std::ranges::find(goldenRows, static_cast<double>(row)) - goldenRows.begin();
                const Values& cases = Column(schoenfeld, "caseNumber");
                const auto place =
                    std::ranges::find(cases, goldenCases[static_cast<std::size_t>(at)]) - cases.begin();
                return schoenfeld.numbers[3 + PlaceOf(Results().names, of)].at(
                    static_cast<std::size_t>(place));
            },
            1e-5);
    }
}

TEST_F(RegResults, CurvesAreThoseOfTheStratumThatTheyName) {
    for (const char* dataset : {"hand", "leukaemia-wbc", "veteran", "veteran-strata", "larger-strata"}) {
        SCOPED_TRACE(dataset);
        OpenGolden(dataset);
        const auto cells = [&](const test::Sheet& sheet, const char* id) {
            return [this, &sheet, id](const std::string& of, std::size_t row) {
                std::size_t first = 0; // of the rows of the stratum
                if (Results().Stratified()) first = PlaceOf(Words(sheet, "stratum"), "arm = " + of);
                return Column(sheet, id).at(first + row - 1);
            };
        };
        ASSERT_TRUE(Make("SurvivalTable"));
        const test::Sheet& table = SheetOf("Baseline Survival and Hazard (Breslow)");
        Agree("means", "time", cells(table, "time"));
        Agree("means", "deaths", cells(table, "events"));
        Agree("means", "cumulative_hazard", cells(table, "cumulativeHazard"), 1e-5);
        Agree("means", "se_cumulative_hazard", cells(table, "standardError"), 1e-5);
        Agree("means", "survival", cells(table, "survival"));
        Agree("means", "lower", cells(table, "survivalLower"));
        // Where the covariates are 0, the hazard is that at the means by a factor.
        const double factor = Column(table, "hazardAtZero")[0] / Column(table, "cumulativeHazard")[0];
        double mean = 0.0;
        for (std::size_t k = 0; k < Results().Parameters(); ++k)
            mean += Results().estimates[k] * Results().sample.Summary(k).mean;
        if (std::isfinite(factor)) {
            EXPECT_NEAR(std::log(factor), -mean, 1e-9);
        }

        const auto given =
            GoldenCox().where("dataset", dataset).where("run", "at1").where("quantity", "value");
        AutomationValue::List values(Results().Parameters());
        for (std::size_t i = 0; i < given.size(); ++i)
            values[PlaceOf(Results().names, given.texts("of")[i])] = given.numbers("value")[i];
        ASSERT_TRUE(host.Script().Put("CovariateValues", values).ok);
        host.charts.clear();
        ASSERT_TRUE(Make("UserDefinedPlot"));
        const test::Sheet& user = SheetOf("Survival at Given Values of the Covariates");
        Agree("at1", "survival", cells(user, "survival"));
        Agree("at1", "upper", cells(user, "survivalUpper"));
        const CChartInfo& chart = host.charts.back();
        ASSERT_EQ(chart.series.size(), 3 * std::max<std::size_t>(Results().strata.size(), 1));
        std::size_t row = 0;
        for (std::size_t s = 0; s < chart.series.size(); s += 3) {
            const ChartSeries& estimate = chart.series[s];
            if (Results().Stratified()) {
                EXPECT_EQ(estimate.legend, Words(user, "stratum")[row]);
            }
            EXPECT_EQ(estimate.y[1], Column(user, "survival")[row]);
            EXPECT_EQ(chart.series[s + 1].y[1], Column(user, "survivalLower")[row]);
            EXPECT_EQ(chart.series[s + 2].role, ChartSeries::Role::UpperBound);
            const auto before =
                std::ranges::count_if(estimate.leaving, [&](double t) { return t < estimate.x[1]; });
            EXPECT_EQ(static_cast<double>(std::ssize(estimate.leaving) - before),
                      Column(user, "atRisk")[row]);
            EXPECT_TRUE(std::ranges::is_sorted(estimate.leaving));
            if (Results().Stratified())
                row += static_cast<std::size_t>(std::ranges::count(Words(user, "stratum"), estimate.legend));
        }
    }
}

TEST_F(RegResults, StrataFittedAloneAndTheTestOfEqualCoefficients) {
    for (const char* dataset : {"leukaemia-wbc", "veteran-strata", "tied", "larger-strata"}) {
        SCOPED_TRACE(dataset);
        OpenGolden(dataset);
        State().settings.differentBaselines = false;
        ASSERT_TRUE(Make("StratitifiedAnalysis"));
        const test::Sheet& strata = SheetOf("Stratified Analysis: Strata Fitted Alone");
        const auto byCode = [&](const char* id) {
            return [&strata, id](const std::string& of, std::size_t) {
                const Values& codes = Column(strata, "stratum");
                return Column(strata, id)
                    .at(static_cast<std::size_t>(std::ranges::find(codes, std::stod(of)) - codes.begin()));
            };
        };
        Agree("", "stratum_loglik", byCode("logLikelihood"));
        Agree("", "stratum_cases", byCode("valid"));
        Agree("", "stratum_events", byCode("uncensored"));
        const std::string test = "Stratified Analysis: Test of Equal Coefficients";
        Agree("", "strata_loglik", At(test, "Equal coefficients", "sumOfStrata"));
        Agree("", "strata_chisq", At(test, "Equal coefficients", "chiSquare"));
        Agree("", "strata_df", At(test, "Equal coefficients", "df"));
        Agree("", "strata_p", At(test, "Equal coefficients", "p"));
        const test::Sheet& parameters = SheetOf("Stratified Analysis: Parameter Estimates by Stratum");
        for (std::size_t row = 0; row < Column(parameters, "beta").size(); ++row) {
            const std::string code = FormatExact(Column(parameters, "stratum")[row]);
            const auto golden = GoldenCox()
                                    .where("dataset", dataset)
                                    .where("run", "stratum " + code)
                                    .where("of", Words(parameters, "variable")[row]);
            EXPECT_NEAR(Column(parameters, "beta")[row], golden.where("quantity", "beta").numbers("value")[0],
                        1e-6);
            EXPECT_NEAR(Column(parameters, "standardError")[row],
                        golden.where("quantity", "se").numbers("value")[0], 1e-6);
        }
        host.sheets.clear();
        State().settings.differentBaselines = true;
        ASSERT_TRUE(Make("StratitifiedAnalysis"));
        EXPECT_EQ(host.sheets.size(), 2U);
    }
    // A stratum that cannot be fitted has the reason, and there is no test.
    CoxCases cases = CasesNamed("tied");
    for (std::size_t i = 0; i < cases.time.size(); ++i)
        if (cases.code[i] == 7) cases.x[1][i] = 1;
    Open(cases);
    ASSERT_TRUE(Make("StratitifiedAnalysis"));
    const test::Sheet& strata = SheetOf("Stratified Analysis: Strata Fitted Alone");
    EXPECT_EQ(Words(strata, "whyNot"),
              (std::vector<std::string>{"", cases.names[1] + " does not vary in it"}));
    EXPECT_TRUE(std::isnan(Column(strata, "logLikelihood")[1]));
    const test::Sheet& equal = SheetOf("Stratified Analysis: Test of Equal Coefficients");
    EXPECT_TRUE(std::isnan(Column(equal, "chiSquare")[0]));
    EXPECT_TRUE(Mentions(equal.notes, "No test, as not every stratum"));
    EXPECT_FALSE(std::isnan(Column(equal, "commonFit")[0]));
    Open(CasesNamed("aml"));
    EXPECT_EQ(MessageOf("StratitifiedAnalysis"), StrRegNotStratified);
}

TEST_F(RegResults, WhatTheReportPrintsStandsInCells) {
    OpenGolden("veteran-strata");
    Results().missing = {0, 5, 2};
    ASSERT_TRUE(Make("Summary"));
    for (const char* title : {"Tests of the Model", "Fit of the Model"})
        for (const Values& column : SheetOf(title).numbers)
            for (const double cell : column)
                EXPECT_TRUE(host.report.find(FormatNumber(cell)) != std::string::npos ||
                            host.report.find(FormatNumber(cell, 10)) != std::string::npos ||
                            host.report.find(FormatProbability(cell)) != std::string::npos)
                    << title << " " << cell;
    for (const char* line :
         {"Stratified by arm (same beta, different h0)  No. grps: 4",
          "Independent variables (3):   trt, karno, age", "Left out as a value is missing:   karno 5, age 2",
          "Tied survival times:   Breslow's method"})
        EXPECT_NE(host.report.find(line), std::string::npos) << line << "\n" << host.report;
    // Of strata: their cases.
    const test::Sheet& fit = SheetOf("Fit of the Model");
    EXPECT_EQ(Cell(fit, "Valid observations", "value"),
              Cell(fit, "Uncensored", "value") + Cell(fit, "Censored", "value"));
    EXPECT_NE(host.report.find("stratum arm = 3: "), std::string::npos) << host.report;
}

TEST_F(RegResults, ChartsShowWhatTheTablesHave) {
    OpenGolden("veteran-strata");
    for (const char* plot : {"Plot1", "Plot2", "Plot3", "ForestPlot", "PlotOfScaledSchoenfeldResiduals"})
        ASSERT_TRUE(Make(plot)) << plot;
    ASSERT_TRUE(Make("SurvivalTable") && Make("Residuals") && Make("Summary"));
    ASSERT_EQ(host.charts.size(), 7U);
    const test::Sheet& table = SheetOf("Baseline Survival and Hazard (Breslow)");
    std::size_t row = 0;
    for (std::size_t s = 0; s < 4; ++s) {
        const ChartSeries& survival = host.charts[0].series[s];
        const ChartSeries& hazard = host.charts[2].series[s];
        EXPECT_EQ(hazard.legend, survival.legend);
        for (std::size_t i = 0; i < hazard.x.size(); ++i, ++row) {
            EXPECT_EQ(Words(table, "stratum")[row], survival.legend);
            EXPECT_EQ(survival.x[i + 1], Column(table, "time")[row]);
            EXPECT_EQ(survival.y[i + 1], Column(table, "survival")[row]);
            EXPECT_EQ(hazard.x[i], std::log(Column(table, "time")[row]));
            EXPECT_EQ(hazard.y[i], std::log(Column(table, "cumulativeHazard")[row]));
        }
    }
    EXPECT_EQ(row, Column(table, "time").size());
    std::multiset<std::pair<double, double>> points;
    for (const ChartSeries& series : host.charts[1].series)
        for (std::size_t i = 0; i < series.x.size(); ++i)
            points.emplace(series.x[i], series.y[i]);
    const test::Sheet& residuals = SheetOf("Residuals");
    std::multiset<std::pair<double, double>> rows;
    for (std::size_t i = 0; i < Column(residuals, "martingale").size(); ++i)
        rows.emplace(Column(residuals, "linearPredictor")[i], Column(residuals, "martingale")[i]);
    EXPECT_EQ(points, rows);
    // The forest: from the top down the covariates, each with its limits around its ratio.
    const CChartInfo& forest = host.charts[3];
    EXPECT_TRUE(forest.xAxis.logarithmic);
    const test::Sheet& parameters = SheetOf("Parameter Estimates");
    for (std::size_t k = 0; k < 3; ++k) {
        const double place = forest.series[2].y[k];
        EXPECT_EQ(forest.yAxis.names[static_cast<std::size_t>(place) - 1], Results().names[k]);
        EXPECT_EQ(forest.series[2].x[k], Column(parameters, "expBeta")[k]);
        EXPECT_EQ(forest.series[1].x[3 * k], Column(parameters, "expBetaLower")[k]);
        EXPECT_EQ(forest.series[1].x[3 * k + 1], Column(parameters, "expBetaUpper")[k]);
        EXPECT_EQ(forest.series[1].y[3 * k], place);
        const CChartInfo& schoenfeld = host.charts[4 + k];
        EXPECT_EQ(schoenfeld.title, "Scaled Schoenfeld Residuals: " + Results().names[k]);
        EXPECT_EQ(schoenfeld.series[1].y, Values(2, Results().estimates[k]));
    }
    // Times of 0 have no logarithm.
    CoxCases atZero = CasesNamed("hand");
    for (double& time : atZero.time)
        time -= 1;
    Open(atZero);
    ASSERT_TRUE(Make("Plot3"));
    EXPECT_TRUE(Mentions(host.charts.back().notes, "time 0 has no logarithm: 1."));
    EXPECT_EQ(host.charts.back().series[0].x.size(), 2U);
}

TEST_F(RegResults, ValuesForTheUserDefinedPlot) {
    OpenGolden("veteran-strata");
    const auto put = [&](const AutomationValue::List& values) {
        ASSERT_TRUE(host.Script().Put("CovariateValues", values).ok);
    };
    // None, too few, and nothing: the means.
    ASSERT_TRUE(Make("UserDefinedPlot"));
    const auto atMeans = host.charts.back().series[0].y;
    put({AutomationValue{}, none});
    ASSERT_TRUE(Make("UserDefinedPlot"));
    EXPECT_EQ(host.charts.back().series[0].y, atMeans);
    put({AutomationValue{}, 30});
    ASSERT_TRUE(Make("UserDefinedPlot"));
    EXPECT_LT(host.charts.back().series[0].y[3], atMeans[3]);
    EXPECT_TRUE(Mentions(host.charts.back().notes, "karno = 30; the others have their means."))
        << host.charts.back().notes[0];
    put({1, 2, 3, 4});
    EXPECT_EQ(MessageOf("UserDefinedPlot"), StrRegTooManyValues);
    EXPECT_NE(host.messages[0].detail.find("Values that are given: 4; covariates: 3 (trt, karno, age)."),
              std::string::npos);
    for (const double far : {1e6, -1e6, 1e300}) {
        put({AutomationValue{}, far});
        EXPECT_EQ(MessageOf("UserDefinedPlot"), StrRegValuesTooFar) << far;
    }
    // People are asked, with the means in the places of what is not given; what they leave stays the mean.
    host.automation = false;
    put({AutomationValue{}, 30});
    EXPECT_FALSE(Make("UserDefinedPlot")) << "cancelled";
    EXPECT_TRUE(host.messages.empty());
    host.startValues = {Results().sample.Summary(0).mean, 30, 50};
    ASSERT_TRUE(Make("UserDefinedPlot"));
    EXPECT_TRUE(Mentions(host.charts.back().notes, "karno = 30, age = 50; the others have their means."));
    EXPECT_TRUE(std::isnan(State().output.covariateValues[0]));
    EXPECT_EQ(State().output.covariateValues[2], 50);
    for (const double level : {0.0, 1.0, none})
        EXPECT_FALSE(host.Script().Put("ConfidenceLevel", level).ok);
}

TEST_F(RegResults, NumbersBeyondDoublesAreEmptyCellsWithTheReason) {
    OpenGolden("veteran");
    Results().estimates[0] = 800.0; // as a likelihood without a maximum leaves it
    Results().estimate.covariance(1, 1) = 1e6;
    for (std::size_t k = 0; k < 8; ++k)
        Results().estimate.covariance(2, k) = Results().estimate.covariance(3, k);
    Results().estimate.nullScore = none;
    Show();
    ASSERT_TRUE(Make("Summary"));
    const test::Sheet& parameters = SheetOf("Parameter Estimates");
    EXPECT_TRUE(std::isnan(Column(parameters, "expBeta")[0]));
    EXPECT_TRUE(std::isnan(Column(parameters, "expBetaUpper")[1]));
    EXPECT_TRUE(Mentions(parameters.notes, "An empty cell (--) is"));
    const test::Sheet& tests = SheetOf("Tests of the Model");
    EXPECT_FALSE(std::isnan(Column(tests, "chiSquare")[0]));
    EXPECT_TRUE(std::isnan(Column(tests, "chiSquare")[1]) && std::isnan(Column(tests, "p")[1]));
    EXPECT_TRUE(std::isnan(Column(tests, "chiSquare")[2]));
    EXPECT_TRUE(Mentions(tests.notes, "singular"));
    EXPECT_NE(host.report.find("Wald test, Chi-Square:   cannot be computed"), std::string::npos);
    ASSERT_TRUE(Make("ForestPlot"));
    EXPECT_EQ(host.charts.back().yAxis.names.size(), 6U);
    EXPECT_TRUE(Mentions(host.charts.back().notes, "trt and celltype=smallcell."));
    for (const char* output :
         {"SurvivalTable", "Residuals", "ProportionalHazardsTest", "ScaledSchoenfeldResiduals", "Plot1",
          "Plot2", "Plot3", "PlotOfScaledSchoenfeldResiduals"})
        Make(output); // whatever they show, they end
    for (const test::Sheet& sheet : host.sheets)
        for (const Values& column : sheet.numbers)
            EXPECT_TRUE(std::ranges::none_of(column, [](double cell) { return std::isinf(cell); }))
                << sheet.title;
}

TEST_F(RegResults, EveryOutputAtTheLargestSizes) {
    Open(CoxCases::Random(2500, 40, 100, 7));
    for (const AutomationMember& member : host.Dialog().Interface()->members)
        if (member.kind == MemberKind::Action && member.name != "ModelComparison") {
            EXPECT_TRUE(Make(std::string{member.name}.c_str())) << member.name;
        }
    EXPECT_EQ(host.charts.size(), 45U);
    std::size_t lines = 0;
    for (const char c : host.report)
        lines += c == '\n' ? 1 : 0;
    EXPECT_LT(lines, 200U);
    EXPECT_LE(LongestLine(), 80U);
}

} // namespace
} // namespace ozm::survival
