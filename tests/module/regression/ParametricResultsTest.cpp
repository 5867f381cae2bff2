// The outputs of the exponential, lognormal and normal regression: that they show the numbers of an
// independent program where they belong, in charts as in spreadsheets; the comparison of the models; what is
// said where one has no such output, or no such number.

#include "module/resources/Regression.h"
#include "module/resources/Resources.h"
#include "module/survdata/NormalQuantile.h"
#include "tests/module/regression/GoldenRows.h"
#include "tests/module/regression/ParametricCases.h"
#include "tests/module/regression/RegResultsFixture.h"

namespace ozm::survival {
namespace {

using test::none;

struct Model {
    const char* name;
    RegressionKind kind;
};
constexpr Model models[] = {{"exponential", RegressionKind::Exponential},
                            {"lognormal", RegressionKind::Lognormal},
                            {"normal", RegressionKind::Normal}};

class ParametricResults : public RegResultsFixture {
protected:
    void OpenGolden(const std::string& dataset, const Model& model) {
        host.sheets.clear();
        host.charts.clear();
        host.report.clear();
        golden_ = GoldenRowsOf(GoldenParametric(), dataset);
        Open(ParametricCasesNamed(dataset), model.kind, 1e-10);
    }
    [[nodiscard]] bool Has(const std::string& run) const {
        return std::ranges::find(golden_, run, &GoldenRow::run) != golden_.end();
    }
    /// The place of a parameter that the golden file names.
    std::size_t Place(const std::string& of) {
        std::string name = of;
        if (of == "constant" || of == "sigma")
            name[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(name[0])));
        return PlaceOf(Results().parameterNames, name);
    }
    Ours Parameter(const char* id) {
        const Values& column = Column(SheetOf("Parameter Estimates"), id);
        return {[this, &column](const GoldenRow& row) { return column.at(Place(row.of)); }};
    }
    Ours At(const char* title, const char* row, const char* id, double size = 0.0) {
        const double cell = Cell(SheetOf(title), row, id);
        return {[cell](const GoldenRow&) { return cell; }, size};
    }
    Ours Row(const Values& column, double size = 1.0) {
        return {[&column](const GoldenRow& row) { return column.at(row.row - 1); }, size};
    }
    void PutAt(const std::string& run) {
        AutomationValue::List values(Results().names.size());
        for (const GoldenRow& row : golden_)
            if (row.run == run && row.quantity == "x") values[PlaceOf(Results().names, row.of)] = row.value;
        ASSERT_TRUE(host.Script().Put("CovariateValues", values).ok);
    }
    std::vector<GoldenRow> golden_;
};

TEST_F(ParametricResults, SheetsShowTheNumbersOfAnIndependentProgram) {
    const char* const fit = "Fit of the Model";
    const char* const final = "Log-likelihood of final solution";
    for (const char* dataset : {"leukaemia", "leukaemia-wbc", "veteran", "feigl-zelen", "galaxies", "heavy"})
        for (const Model& model : models) {
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
            const test::Sheet& quartiles =
                SheetOf("Predicted Survival Times at Given Values of the Covariates");
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
    for (const Model& model : models) {
        SCOPED_TRACE(model.name);
        OpenGolden("veteran", model);
        for (const char* output : {"Plot1", "Plot2", "Plot3", "SurvivalTable", "Residuals"})
            ASSERT_TRUE(Make(output)) << output;
        // Fitted and Kaplan-Meier curves; between the points of the smooth one its neighbours bound it.
        const test::Sheet table = SheetOf("Survival Function: Kaplan-Meier, and Fitted at the Means");
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

TEST_F(ParametricResults, SayOnWhichScaleTheyStandAndWhatTheyAre) {
    const std::map<std::string, std::pair<const char*, const char*>> told{
        {"exponential", {"on the scale of time (of the survival times).", "mean survival time changes"}},
        {"lognormal",
         {"on the scale of log time (of the log survival times).", "median survival time changes"}},
        {"normal", {"on the scale of time (of the survival times).", "change of the mean survival time"}}};
    for (const Model& model : models) {
        SCOPED_TRACE(model.name);
        OpenGolden("leukaemia", model);
        ASSERT_TRUE(Make("Summary"));
        EXPECT_NE(host.report.find(told.at(model.name).first), std::string::npos) << host.report;
        EXPECT_TRUE(Mentions(SheetOf("Parameter Estimates").notes, told.at(model.name).second));
        EXPECT_TRUE(Mentions(SheetOf("Fit of the Model").notes, told.at(model.name).first));
        EXPECT_EQ(host.report.find("Score"), std::string::npos);
        EXPECT_EQ(SheetOf("Tests of the Model").rowHeadings.size(), 2U);
        EXPECT_FALSE(Mentions(SheetOf("Parameter Estimates").notes, "the maximum is not reached"));
        for (const char* title : {"Tests of the Model", "Fit of the Model"})
            for (const Values& column : SheetOf(title).numbers)
                for (const double cell : column)
                    EXPECT_TRUE(host.report.find(FormatNumber(cell)) != std::string::npos ||
                                host.report.find(FormatNumber(cell, 10)) != std::string::npos ||
                                host.report.find(FormatProbability(cell)) != std::string::npos)
                        << title << " " << cell;
        // What it has not: a script is told whose output it is, a person has no such button.
        for (const char* output :
             {"StratitifiedAnalysis", "ProportionalHazardsTest", "ScaledSchoenfeldResiduals"}) {
            EXPECT_EQ(MessageOf(output), StrRegNotOfModel);
            EXPECT_NE(host.messages[0].detail.find("It is an output of Proportional hazard (Cox) regression"),
                      std::string::npos)
                << host.messages[0].detail;
        }
        EXPECT_EQ(Make("ForestPlot"), model.kind != RegressionKind::Normal);
        host.automation = false;
        Show();
        EXPECT_EQ(host.Dialog().IsEnabled(RegForest), model.kind != RegressionKind::Normal);
        EXPECT_FALSE(host.Dialog().IsEnabled(RegStratified) || host.Dialog().IsEnabled(RegSchoenfeld));
        EXPECT_TRUE(host.Dialog().IsEnabled(RegComparison) && host.Dialog().IsEnabled(RegUserPlot));
        host.automation = true;
    }
    // Stopped early: the parameters that are not there yet.
    Open(ParametricCasesNamed("heavy"), RegressionKind::Lognormal, 0.05);
    ASSERT_TRUE(Make("Summary"));
    EXPECT_NE(host.report.find("Not at the maximum to three digits"), std::string::npos) << host.report;
    EXPECT_TRUE(Mentions(SheetOf("Parameter Estimates").notes, "Sigma: use a smaller convergence criterion"));
}

TEST_F(ParametricResults, ComparisonOfTheModels) {
    for (const Model& model : models) {
        OpenGolden("veteran", model);
        ASSERT_TRUE(Make("ModelComparison"));
        const test::Sheet sheet = SheetOf("Comparison of Parametric Models");
        double best = INFINITY;
        for (std::size_t row = 0; row < 3; ++row) {
            const auto cell = [&](const char* id) {
                return At("Comparison of Parametric Models", sheet.rowHeadings[row].c_str(), id, 1.0);
            };
            Agree(golden_, models[row].name,
                  {{"loglik_time", cell("logLikelihood")},
                   {"akaike_time", cell("akaike")},
                   {"chisq", cell("chiSquare")}},
                  1e-6);
            best = std::min(best, Column(sheet, "akaike")[row]);
            EXPECT_EQ(Words(sheet, "whyNot")[row], "");
        }
        EXPECT_EQ(std::ranges::min(Column(sheet, "difference")), 0.0);
        EXPECT_EQ(Column(sheet, "difference")[2], Column(sheet, "akaike")[2] - best);
        EXPECT_EQ(Column(sheet, "parameters"), (Values{9, 10, 10}));
    }
    // A model that cannot be fitted has the reason, and the others count.
    OpenGolden("zeros", models[0]);
    ASSERT_TRUE(Make("ModelComparison"));
    const test::Sheet sheet = SheetOf("Comparison of Parametric Models");
    EXPECT_TRUE(std::isnan(Column(sheet, "akaike")[1]) && std::isnan(Column(sheet, "chiSquare")[1]));
    EXPECT_NE(Words(sheet, "whyNot")[1].find("likelihood for this model. The survival time 0 of case 1"),
              std::string::npos)
        << Words(sheet, "whyNot")[1];
    EXPECT_GT(Column(sheet, "difference")[2], 0.0);
    ASSERT_TRUE(Make("Summary"));
    EXPECT_FALSE(Mentions(SheetOf("Fit of the Model").rowHeadings, "scale of log time"));
    EXPECT_FALSE(Mentions(sheet.notes, "Not at the maximum"));
    Open(ParametricCasesNamed("heavy"), RegressionKind::Normal, 0.5);
    ASSERT_TRUE(Make("ModelComparison"));
    EXPECT_TRUE(Mentions(SheetOf("Comparison of Parametric Models").notes, "Not at the maximum"));
}

TEST_F(ParametricResults, WhatCannotBeRepresentedOrIsNoTimeIsSaid) {
    // Events at time 0: no deviance residual; and by the normal model times below 0.
    for (const Model& model : {models[0], models[2]}) {
        OpenGolden("zeros", model);
        for (const char* output : {"Residuals", "Plot1", "Plot2", "Plot3", "SurvivalTable"})
            ASSERT_TRUE(Make(output)) << output;
    }
    OpenGolden("zeros", models[0]);
    ASSERT_TRUE(Make("Residuals"));
    EXPECT_TRUE(std::isnan(Column(SheetOf("Residuals"), "deviance")[0]));
    EXPECT_EQ(Column(SheetOf("Residuals"), "coxSnell")[0], 0.0);
    EXPECT_TRUE(Mentions(SheetOf("Residuals").notes, "An empty cell (--) is"));
    OpenGolden("veteran", models[2]);
    const std::size_t karno = PlaceOf(Results().names, "karno");
    AutomationValue::List values(Results().names.size());
    values[karno] = 10;
    ASSERT_TRUE(host.Script().Put("CovariateValues", values).ok);
    ASSERT_TRUE(Make("UserDefinedPlot"));
    const test::Sheet quartiles = SheetOf("Predicted Survival Times at Given Values of the Covariates");
    EXPECT_LT(Column(quartiles, "time")[0], 0.0);
    EXPECT_TRUE(Mentions(quartiles.notes, "A time below 0 says that the normal model does not fit here"));
    EXPECT_TRUE(Mentions(host.charts.back().notes, "fail before time 0"));
    // Far away the survival is 1 or 0, and times are beyond the data or beyond doubles.
    OpenGolden("veteran", models[1]);
    values[karno] = 1e5;
    ASSERT_TRUE(host.Script().Put("CovariateValues", values).ok);
    ASSERT_TRUE(Make("UserDefinedPlot"));
    const test::Sheet far = SheetOf("Predicted Survival Times at Given Values of the Covariates");
    EXPECT_TRUE(std::isnan(Column(far, "time")[1]));
    EXPECT_TRUE(Mentions(far.notes, "An empty cell") && Mentions(far.notes, "Times above 999"));
    EXPECT_EQ(host.charts.back().series[0].y.back(), 1.0);
    values[karno] = 1e300;
    ASSERT_TRUE(host.Script().Put("CovariateValues", values).ok);
    EXPECT_EQ(MessageOf("UserDefinedPlot"), StrRegValuesTooFar);
    values.assign(9, 1.0);
    ASSERT_TRUE(host.Script().Put("CovariateValues", values).ok);
    EXPECT_EQ(MessageOf("UserDefinedPlot"), StrRegTooManyValues);
    EXPECT_NE(host.messages[0].detail.find("given: 9; covariates: 8 (trt"), std::string::npos);
    // An estimate that ran away.
    Results().estimates[karno] = 800.0;
    Show();
    for (const AutomationMember& member : host.Dialog().Interface()->members)
        if (member.kind == MemberKind::Action)
            Make(std::string{member.name}.c_str()); // whatever they show, they end
    for (const test::Sheet& sheet : host.sheets)
        for (const Values& column : sheet.numbers)
            EXPECT_TRUE(std::ranges::none_of(column, [](double cell) { return std::isinf(cell); }))
                << sheet.title;
    for (const CChartInfo& chart : host.charts)
        for (const ChartSeries& series : chart.series)
            EXPECT_TRUE(std::ranges::none_of(series.y, [](double y) { return std::isinf(y); }))
                << chart.title;
}

TEST_F(ParametricResults, EveryOutputAtTheLargestSizes) {
    for (const Model& model : models) {
        host.report.clear();
        host.sheets.clear();
        Open(CoxCases::Random(400, 40, 1, 7), model.kind, 1e-4);
        for (const AutomationMember& member : host.Dialog().Interface()->members) {
            if (member.kind != MemberKind::Action) continue;
            const bool made = Make(std::string{member.name}.c_str());
            EXPECT_TRUE(made || host.messages.back().id == StrRegNotOfModel) << member.name;
        }
        EXPECT_EQ(SheetOf("Covariances of Parameter Estimates").numbers.size(), Results().Parameters());
        std::size_t longest = 0;
        std::size_t current = 0;
        for (const char c : host.report)
            longest = std::max(longest, current = c == '\n' ? 0 : current + 1);
        EXPECT_LE(longest, 80U);
    }
}

} // namespace
} // namespace ozm::survival
