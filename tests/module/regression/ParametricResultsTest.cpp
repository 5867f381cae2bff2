// The outputs of the exponential, lognormal and normal regression: that they show the numbers of an
// independent program where they belong, in charts as in spreadsheets.

#include "module/survdata/NormalQuantile.h"
#include "tests/module/regression/ParametricResultsFixture.h"

namespace ozm::survival {
namespace {

TEST_F(ParametricResults, SheetsShowTheNumbersOfAnIndependentProgram) {
    const char* const fit = "Fit of the Model";
    const char* const final = "Log-likelihood of final solution";
    for (const char* dataset : {"leukaemia", "leukaemia-wbc", "veteran", "feigl-zelen", "galaxies", "heavy"})
        for (const Model& model : parametricModels) {
            if (dataset == std::string{"galaxies"} && model.kind == RegressionKind::Exponential) continue;
            SCOPED_TRACE(dataset + (" " + std::string{model.name}));
            OpenGolden(dataset, model);
            const double precision = 1e-6;
            ASSERT_TRUE(Make("Summary"));
            const char* const likelihoodRatio = "Likelihood ratio (null model - final solution)";
            Agree(golden_, model.name,
                  {{"beta", Parameter("beta")},
                   {"se", Parameter("standardError")},
                   {"chisq", At("Tests of the Model", likelihoodRatio, "chiSquare", 10.0)},
                   {"p", At("Tests of the Model", likelihoodRatio, "p", 1e-3)},
                   {"loglik", At(fit, final, "value")},
                   {"loglik_null", At(fit, "Log-likelihood of null model", "value")},
                   {"akaike_time", At(fit, "Akaike's criterion, scale of time", "value")},
                   {"cases", At(fit, "Valid observations", "value")}},
                  precision);
            EXPECT_EQ(Cell(SheetOf(fit), "Number of parameters", "value"),
                      static_cast<double>(Results().Parameters()));
            if (model.kind == RegressionKind::Lognormal)
                Agree(golden_, model.name,
                      {{"loglik_time", At(fit, "Log-likelihood of final solution, scale of time", "value")}},
                      precision);
            if (model.kind == RegressionKind::Exponential) {
                const double gain =
                    Cell(SheetOf(fit), "Log-likelihood of final solution, scale of log time", "value") -
                    Cell(SheetOf(fit), final, "value");
                Agree(golden_, model.name, {{"sum_log_times", {[gain](const GoldenRow&) { return gain; }}}},
                      precision);
            }
            // No test of sigma, and no ratio but of coefficients.
            const test::Sheet parameters = SheetOf("Parameter Estimates");
            const std::size_t q = Results().names.size();
            const Values& t = Column(parameters, "t");
            for (std::size_t k = 0; k < Results().Parameters(); ++k) {
                const double beta = Column(parameters, "beta")[k];
                const double error = Column(parameters, "standardError")[k];
                const double lower = Column(parameters, "betaLower")[k];
                const double upper = Column(parameters, "betaUpper")[k];
                if (k > q) {
                    EXPECT_TRUE(std::isnan(t[k]) && std::isnan(Column(parameters, "p")[k]));
                    EXPECT_NEAR(lower * upper, beta * beta, 1e-9 * beta * beta);
                    EXPECT_NEAR(std::log(upper / beta), 1.959964 * error / beta, 1e-6);
                } else {
                    EXPECT_DOUBLE_EQ(t[k], beta / error);
                    EXPECT_NEAR(upper - lower, 2.0 * 1.959964 * error, 1e-6 * error);
                }
                if (model.kind == RegressionKind::Normal) continue;
                EXPECT_EQ(std::isnan(Column(parameters, "expBeta")[k]), k >= q);
                EXPECT_TRUE(k >= q || Column(parameters, "expBetaUpper")[k] == std::exp(upper));
            }
            EXPECT_EQ(std::ranges::count(parameters.ids, "expBeta"),
                      model.kind == RegressionKind::Normal ? 0 : 1);

            ASSERT_TRUE(Make("ParameterCovariancesCorrelations"));
            const auto matrix = [&](const char* title, double size) {
                const test::Sheet& sheet = SheetOf(title);
                return Ours{[this, &sheet](const GoldenRow& row) {
                                return sheet.numbers.at(Place(row.of)).at(row.row - 1);
                            },
                            size};
            };
            Agree(golden_, model.name,
                  {{"covariance", matrix("Covariances of Parameter Estimates", 1e-3)},
                   {"correlation", matrix("Correlations of Parameter Estimates", 1.0)}},
                  precision);

            ASSERT_TRUE(Make("Residuals"));
            const test::Sheet residuals = SheetOf("Residuals");
            const bool exponential = model.kind == RegressionKind::Exponential;
            Agree(golden_, model.name,
                  {{"linear_predictor", Row(Column(residuals, "linearPredictor"))},
                   {"residual", Row(Column(residuals, exponential ? "coxSnell" : "standardised"))}},
                  precision);

            // Somebody in particular: survival at those times that are of events, and quartiles.
            const std::string at = model.name + std::string{" at1"};
            PutAt(at);
            ASSERT_TRUE(Make("UserDefinedPlot"));
            const test::Sheet& quartiles = SheetOf("Survival Times at Given Values");
            const auto quartile = [&](const char* id) {
                return Ours{[&quartiles, id](const GoldenRow& row) {
                    return Column(quartiles, id).at(row.row == 75 ? 0 : row.row == 50 ? 1 : 2);
                }};
            };
            const std::string own = model.kind == RegressionKind::Normal ? "_own" : "";
            Agree(golden_, at,
                  {{"quantile", quartile("time")},
                   {"se_quantile", quartile("standardError")},
                   {"quantile_lower" + own, quartile("timeLower")},
                   {"quantile_upper" + own, quartile("timeUpper")}},
                  precision);
            const test::Sheet& survival = SheetOf("Survival at Given Values of the Covariates");
            const Values& times = Column(survival, "time");
            int found = 0;
            for (const GoldenRow& time : golden_) {
                if (time.run != at || time.quantity != "time") continue;
                const auto place = std::ranges::find(times, time.value);
                if (place == times.end()) continue;
                const auto same = std::ranges::find_if(golden_, [&](const GoldenRow& row) {
                    return row.run == at && row.quantity == "survival_upper" && row.row == time.row;
                });
                EXPECT_NEAR(
                    Column(survival, "survivalUpper")[static_cast<std::size_t>(place - times.begin())],
                    same->value, precision);
                ++found;
            }
            EXPECT_GT(found, 0);
        }
}

TEST_F(ParametricResults, ChartsShowWhatTheTablesHave) {
    for (const Model& model : parametricModels) {
        SCOPED_TRACE(model.name);
        OpenGolden("veteran", model);
        for (const char* output : {"Plot1", "Plot2", "Plot3", "SurvivalTable", "Residuals"})
            ASSERT_TRUE(Make(output)) << output;
        // Fitted and Kaplan-Meier curves; between the points of the smooth one its neighbours bound it.
        const test::Sheet table = SheetOf("Kaplan-Meier Estimate and Fitted Survival");
        const ChartSeries& fitted = host.charts[0].series[0];
        const ChartSeries& kaplan = host.charts[0].series[1];
        EXPECT_TRUE(std::ranges::is_sorted(fitted.x) && std::ranges::is_sorted(fitted.y, std::greater{}));
        EXPECT_EQ(fitted.x.back(), 999.0);
        for (std::size_t row = 0; row < Column(table, "time").size(); ++row) {
            EXPECT_EQ(kaplan.x[row + 1], Column(table, "time")[row]);
            EXPECT_EQ(kaplan.y[row + 1], Column(table, "kaplanMeier")[row]);
            const auto next = static_cast<std::size_t>(
                std::ranges::lower_bound(fitted.x, Column(table, "time")[row]) - fitted.x.begin());
            EXPECT_LE(Column(table, "survival")[row], fitted.y[next - 1] + 1e-12);
            EXPECT_GE(Column(table, "survival")[row], fitted.y[next] - 1e-12);
            EXPECT_LT(fitted.y[next - 1] - fitted.y[next], 0.02) << "smooth";
        }
        // Residuals: of the uncensored cases against the estimate, of all against the predictor.
        const test::Sheet residuals = SheetOf("Residuals");
        const bool exponential = model.kind == RegressionKind::Exponential;
        const Values& residual = Column(residuals, exponential ? "coxSnell" : "standardised");
        const ChartSeries& points = host.charts[1].series[1];
        std::map<double, double> estimate; // at uncensored cases, as the table has it
        for (std::size_t i = 0; i < residual.size(); ++i)
            if (Results().sample.Complete()[i] != 0)
                estimate[residual[i]] =
                    Column(residuals, exponential ? "cumulativeHazard" : "productLimit")[i];
        ASSERT_EQ(points.x.size(), estimate.size());
        double before = 1.0;
        std::size_t i = 0;
        for (const auto& [x, y] : estimate) {
            EXPECT_EQ(points.x[i], x);
            EXPECT_DOUBLE_EQ(points.y[i], exponential ? y : -NormalQuantile((before + y) / 2.0));
            before = y;
            ++i;
        }
        const ChartSeries& line = host.charts[1].series[0];
        EXPECT_EQ(line.x, line.y);
        std::size_t cases = 0;
        for (const ChartSeries& series : host.charts[2].series)
            cases += series.x.size();
        EXPECT_EQ(cases, residual.size());
        EXPECT_EQ(host.charts[2].series.size(), 2U);
        EXPECT_EQ(host.charts[2].series[0].y[0], residual[0]);
    }
}

} // namespace
} // namespace ozm::survival
