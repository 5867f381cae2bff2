// The estimation of the parametric models through the dialogs: what the driver makes of their endings.

#include "module/regression/RegressionModels.h"
#include "module/resources/Regression.h"
#include "module/resources/Shared.h"
#include "tests/module/AnalysisFixture.h"
#include "tests/module/regression/ParametricCases.h"

#include <algorithm>
#include <cmath>

namespace ozm::survival {
namespace {

using List = AutomationValue::List;

constexpr int exponential = 2;
constexpr int lognormal = 3;
constexpr int normal = 4;

class RunParametric : public test::CoxFixture {
protected:
    RegressionResults& Results() { return State().results; }
    const std::vector<double>& Estimates() { return Results().estimates; }
    double Error(std::size_t k) { return std::sqrt(Results().estimate.covariance(k, k)); }
    /// Whether OK leads to estimates.
    bool Fit(int model, const List& covariates, const List& strata = {}) {
        Select(model, covariates, strata);
        return Ok();
    }
    /// The same with the settings that were set.
    bool FitSo(int model, const List& covariates) {
        Select(model, covariates, {});
        host.Script().Put("NonDefaultStartValuesIterations", true);
        return Ok();
    }
    void Select(int model, const List& covariates, const List& strata) {
        Specify();
        host.Script().Put("TypeOfSurvivalRegressionModel", model);
        host.Script().Put("Variables", List{List{1}, List{2}, covariates, strata});
    }
    bool Ok() {
        host.messages.clear();
        host.notes.clear();
        host.iterations.clear();
        host.statusTexts.clear();
        host.Press(analysis, ControlOk);
        return Results().held;
    }
    /// The settings of the next estimation.
    void Set(double criterion, int iterations, const List& start = {}) {
        host.operateModal = [=](CAnalysisModalDialog& dialog) {
            AutomationObject script(dialog);
            EXPECT_TRUE(script.Put("ConvergenceCriterion", criterion).ok);
            EXPECT_TRUE(script.Put("MaxNumberOfIterations", iterations).ok);
            EXPECT_TRUE(script.Put("StartValues", start).ok);
        };
    }
    void Cases(std::vector<double> times, std::vector<double> complete, std::vector<std::vector<double>> x) {
        host.columns = of.columns;
        host.columns.resize(2);
        host.columns[0].values = std::move(times);
        host.columns[1].values = std::move(complete);
        for (std::size_t k = 0; k < x.size(); ++k)
            host.columns.push_back({"x" + std::to_string(k + 1), std::move(x[k])});
    }
    void ExpectMessage(int id, const std::string& detail) {
        ASSERT_EQ(host.messages.size(), 1U);
        EXPECT_EQ(host.messages[0].id, id);
        EXPECT_NE(host.messages[0].detail.find(detail), std::string::npos) << host.messages[0].detail;
    }
};

// The published fits of the trial of 6-MP, with R's log-likelihoods where none is published.
TEST_F(RunParametric, TheTrialOf6MP) {
    Set(0.00001, 200);
    ASSERT_TRUE(FitSo(exponential, {3}));
    EXPECT_EQ(Results().parameterNames, (std::vector<std::string>{"drug", "Constant"}));
    EXPECT_NEAR(Estimates()[0], 1.526614, 1e-6);
    EXPECT_NEAR(Error(0), 0.398410, 1e-6);
    EXPECT_NEAR(Results().estimate.logLikelihood, -108.5240, 5e-5);
    EXPECT_NEAR(Results().estimate.nullLogLikelihood, -116.7667, 5e-5);
    EXPECT_EQ(host.statusTexts,
              (std::vector<std::string>{" Reading data file ... ", "", "Computing...", ""}));
    EXPECT_EQ(host.iterations[0], "Iteration  Log-Likelihood  Parameters     ");
    EXPECT_EQ(host.iterations[1], "   1 -116.77       0 2.89222"); // the reported sign: log(541 / 30)
    ASSERT_TRUE(FitSo(lognormal, {3}));
    EXPECT_EQ(Results().parameterNames, (std::vector<std::string>{"drug", "Constant", "Sigma"}));
    EXPECT_NEAR(Estimates()[0], 1.346847, 1e-4);
    EXPECT_NEAR(Estimates()[1], 1.825121, 1e-4);
    EXPECT_NEAR(Estimates()[2], 0.923869, 1e-4);
    EXPECT_NEAR(Error(0), 0.316498, 2e-5);
    EXPECT_NEAR(Error(1), 0.201605, 2e-5);
    EXPECT_EQ(host.statusTexts,
              (std::vector<std::string>{" Reading data file ... ", "", " Preparing data for analysis ... ",
                                        "Computing Log-Likelihood ... ", "Estimating null model ... ", ""}));
    EXPECT_EQ(host.iterations[0], "Iteration                  Parameters     ");
    EXPECT_EQ(std::ranges::count(host.iterations, "Estimating null model ... "), 1);
    ASSERT_TRUE(FitSo(normal, {3}));
    EXPECT_TRUE(std::isfinite(Results().estimate.nullLogLikelihood));
}

TEST_F(RunParametric, RefusesWhatAModelCannotHave) {
    EXPECT_FALSE(Fit(normal, {3}, {4}));
    ExpectMessage(StrRegCannotBeStratified, "Leave out the stratification variable 'sex'");
    host.columns[0].values[4] = host.columns[0].values[7] = 0;
    EXPECT_TRUE(Fit(normal, {3}));
    EXPECT_TRUE(Fit(exponential, {3}));
    EXPECT_FALSE(Fit(lognormal, {3}));
    ExpectMessage(StrRegNoModelLikelihood,
                  "The survival time 0 of case 5 has no logarithm; cases with such a time: 2.");
    // As many uncensored cases as covariates, but fewer than parameters.
    Cases({1, 2, 3, 4, 5}, {1, 1, 0, 0, 0}, {{1, 2, 4, 3, 1}, {5, 1, 2, 2, 8}});
    for (const int model : {exponential, lognormal, normal}) {
        EXPECT_FALSE(Fit(model, {3, 4}));
        ExpectMessage(StrRegTooFewForModel, model == exponential
                                                ? "There are 3 parameters and 2 uncensored cases."
                                                : "There are 4 parameters and 2 uncensored cases.");
    }
}

TEST_F(RunParametric, SaysWhyThereAreNoEstimates) {
    host.columns.push_back({"twice", {}});
    for (std::size_t i = 0; i < 42; ++i)
        host.columns[4].values.push_back(2 * host.columns[2].values[i] + 5);
    for (const int model : {exponential, lognormal, normal}) {
        EXPECT_FALSE(Fit(model, {4, 3, 5}));
        ExpectMessage(StrRegSingular, "'twice' depends on the covariates before it ('drug')");
    }
    // Nearly constant for its size: the exponential model's factor cannot tell it from the constant.
    host.columns.resize(4);
    for (std::size_t i = 0; i < 42; ++i)
        host.columns[3].values[i] = 1990.0 + static_cast<double>(i % 7);
    EXPECT_FALSE(Fit(exponential, {4}));
    ExpectMessage(StrRegSingular, "subtract a constant from 'sex', say 1993.");
    EXPECT_TRUE(Fit(lognormal, {4}));
    // No case of one group had the event.
    const std::vector<double> group{0, 0, 0, 0, 0, 0, 1, 1, 1, 1};
    Cases({4, 2, 7, 3, 5, 6, 7, 5, 8, 6}, {1, 1, 1, 1, 1, 1, 0, 0, 0, 0}, {group});
    for (const int model : {exponential, lognormal, normal}) {
        EXPECT_FALSE(Fit(model, {3}));
        ASSERT_EQ(host.messages.size(), 1U);
        EXPECT_NE(
            host.messages[0].detail.find("The coefficient of 'x1' grows without bound: its value is 0 in all "
                                         "uncensored cases, and no other case has a smaller one."),
            std::string::npos)
            << host.messages[0].detail;
    }
    // Times in units so large that densities are above 1.
    Cases({.001, .002, .0015, .003, .0012, .0022}, {1, 1, 1, 1, 0, 1}, {{1, 2, 3, 1, 2, 3}});
    EXPECT_FALSE(Fit(exponential, {3}));
    ExpectMessage(StrRegTooManyIterations, "The log-likelihood is above 0");
    // The first step goes to a hazard ratio of e^999.
    std::vector<double> times(40, 1000.0);
    std::vector<double> one(40, 0.0);
    for (std::size_t i = 0; i < 20; ++i) {
        times[i] = 0.5 + 0.01 * static_cast<double>(i);
        one[i] = 1.0;
    }
    times[30] = 900;
    Cases(times, std::vector<double>(40, 1.0), {one});
    EXPECT_FALSE(Fit(exponential, {3}));
    ExpectMessage(StrRegNoLikelihood, "A step of the iteration went too far");
    // All uncensored cases on a line.
    Cases({1, 2, 3, 4, 5, 9}, {1, 1, 1, 1, 1, 1}, {{1, 2, 3, 4, 5, 9}});
    EXPECT_FALSE(Fit(normal, {3}));
    ExpectMessage(StrRegNoModelLikelihood, "Sigma comes down to 0");
    // On a line but for their last digits.
    std::vector<double> ratios;
    std::vector<double> steps;
    for (int i = 1; i <= 15; ++i) {
        steps.push_back(i);
        ratios.push_back(3 * std::pow(1.5, i));
    }
    Cases(ratios, std::vector<double>(15, 1.0), {steps});
    EXPECT_FALSE(Fit(lognormal, {3}));
    ExpectMessage(StrRegNoModelLikelihood, "Sigma comes down to 0");
    // Start values are to blame, or units.
    host.columns = of.columns;
    for (const List& start : {List{0, 0, 1e300}, List{1e300, 0, 1}, List{0, 3, 1e-300}}) {
        Set(0.0001, 50, start);
        EXPECT_FALSE(FitSo(normal, {3}));
        ExpectMessage(StrRegNoModelLikelihood, "The start values are too far");
    }
    for (double& time : host.columns[0].values)
        time *= 1e-290;
    EXPECT_FALSE(Fit(normal, {3}));
    ExpectMessage(StrRegNoModelLikelihood,
                  "The survival times are too large or too small to compute with (from 1e-290");
    // The null model takes more iterations than the model, and its own are shown.
    host.columns = of.columns;
    Set(0.00001, 5, {13.862559, 8.6666667, 9.5589414});
    EXPECT_FALSE(FitSo(normal, {3}));
    ExpectMessage(StrRegNoNullModel,
                  "its null model, the constant and sigma alone.\nIterations: 5; the last of them:\n");
}

/// A group without uncensored cases, whichever group the others are compared with.
TEST_F(RunParametric, AGroupWithoutEventsIsFoundBeforeAndAfterTheEstimation) {
    std::vector<double> times;
    std::vector<double> complete;
    std::vector<std::vector<double>> is(3);
    for (std::size_t i = 0; i < 45; ++i) {
        times.push_back(1.0 + static_cast<double>(i * 7 % 23));
        complete.push_back(i % 3 != 0 && i % 5 != 0 ? 1 : 0);
        for (std::size_t group = 0; group < 3; ++group)
            is[group].push_back(i % 3 == group ? 1 : 0);
    }
    const auto mentions = [this](const std::string& what) {
        const std::string all = host.messages.empty() ? "" : host.messages[0].text + host.messages[0].detail;
        EXPECT_NE(all.find(what), std::string::npos) << all;
    };
    for (const int model : {exponential, lognormal, normal})
        for (const bool started : {false, true}) {
            SCOPED_TRACE(model);
            // EM takes ever smaller steps, and this criterion is met.
            Set(started ? 0.05 : 0.0001, started ? 200 : 50,
                !started               ? List{}
                : model == exponential ? List{0, 0, 3}
                                       : List{0, 0, 3, 1});
            Cases(times, complete, {is[1], is[2]});
            EXPECT_TRUE(FitSo(model, {3, 4}) == started || model == exponential);
            mentions("The coefficients of 'x1' and 'x2' grow without bound together, the constant possibly "
                     "with them: a combination");
            Cases(times, complete, {is[0], is[2]});
            EXPECT_TRUE(FitSo(model, {3, 4}) == started || model == exponential);
            mentions("The coefficient of 'x1' grows without bound: its value is 0");
        }
    // Two such groups, one of which the others are compared with: one runs away alone, and then all others.
    Set(0.0001, 50);
    std::vector<double> fourth(45, 0.0);
    for (std::size_t i = 1; i < 45; i += 6) {
        fourth[i] = 1.0;
        is[i % 3][i] = 0.0;
        complete[i] = 0;
    }
    Cases(times, complete, {is[1], is[2], fourth});
    for (const int model : {exponential, lognormal, normal}) {
        EXPECT_FALSE(FitSo(model, {3, 4, 5}));
        mentions("The coefficient of 'x3' grows without bound");
        mentions("The coefficients of 'x1' and 'x2' grow without bound together");
    }
    // A value that is the same but for its last digit.
    for (double& each : fourth)
        each = each > 0.0 ? 0.5 : 0.3;
    *std::ranges::find(fourth, 0.3) = 0.1 + 0.2;
    Cases(times, complete, {fourth});
    EXPECT_FALSE(FitSo(normal, {3}));
    mentions("The coefficient of 'x1' grows without bound");
    // Events on both sides: there is a maximum, and nothing to say.
    complete[0] = 1;
    Cases(times, complete, {is[1], is[2]});
    EXPECT_TRUE(Fit(normal, {3, 4}));
    EXPECT_TRUE(host.messages.empty() && host.notes.empty());
}

/// A few per cent of uncensored cases: the steps of EM overshoot.
TEST_F(RunParametric, AnIterationThatRunsAwayIsToldFromASlowOne) {
    std::vector<double> times;
    std::vector<double> complete;
    std::vector<double> x;
    for (std::size_t i = 0; i < 400; ++i) {
        const bool fails = i % 80 == 0;
        times.push_back(fails ? 50.0 + static_cast<double>(i) / 10 : 100.0);
        complete.push_back(fails ? 1 : 0);
        x.push_back(i % 7 < 3 ? 1 : 0);
    }
    Cases(times, complete, {x});
    EXPECT_FALSE(Fit(normal, {3}));
    ExpectMessage(StrRegNotConverged, "its steps overshoot where only 5 of 400 cases are uncensored.");
    EXPECT_EQ(host.messages[0].detail.find("Allow more iterations"), std::string::npos);
}

/// EM may settle where the information is not positive definite: all is told but what rests on covariances.
TEST_F(RunParametric, EstimatesWithoutAMaximumHaveNoStandardErrors) {
    const CoxCases motorettes = ParametricCasesNamed("motorettes");
    Cases(motorettes.time, motorettes.status, {motorettes.x[0]});
    Set(0.9, 50, {4.3, -6, 0.8});
    ASSERT_TRUE(FitSo(normal, {3}));
    ASSERT_TRUE(std::isnan(Error(0)));
    EXPECT_NEAR(Results().estimate.logLikelihood, -18.482006, 1e-6); // by an independent program
    ASSERT_EQ(host.messages.size(), 1U);
    EXPECT_NE(host.messages[0].text.find("no standard errors. Use a smaller"), std::string::npos);
    host.Script().Put("CovariateValues", List{1.0});
    MakeEveryOutput();
    const test::Sheet table = SheetOf("Parameter Estimates");
    EXPECT_TRUE(std::isfinite(table.numbers[0][0]) && std::isnan(table.numbers[1][0]));
    EXPECT_NE(table.notes.back().find("x1, Constant and Sigma"), std::string::npos) << table.notes.back();
    EXPECT_TRUE(std::isfinite(SheetOf("Survival Times at Given Values").numbers[1][0]));
}

/// A person: nothing runs by itself.
class ParametricByHand : public RunParametric {
protected:
    void SetUp() override {
        RunParametric::SetUp();
        host.automation = false;
    }
};

TEST_F(ParametricByHand, MoreIterationsOfTheEmGoOnWhereTheOthersEnded) {
    host.columns = of.columns;
    std::vector<std::string> lines;
    host.operateModal = [&](CAnalysisModalDialog& dialog) {
        dialog.PutValue(RegCriterion, 0.00001);
        dialog.PutValue(RegIterations, 12);
        host.questionsAsked.clear();
        host.yes = 1;
        dialog.Press(ControlOk);
        lines = host.iterations;
        EXPECT_TRUE(dialog.IsClosed());
        EXPECT_EQ(std::get<int>(dialog.Value(RegIterations)), 42);
    };
    ASSERT_TRUE(Fit(lognormal, {3}));
    EXPECT_EQ(host.questionsAsked, (std::vector<int>{StrRegMoreIterations}));
    EXPECT_TRUE(host.messages.empty() && host.notes.empty());
    const std::vector<double> continued = Estimates();
    const int iterations = Results().estimate.iterations;
    EXPECT_EQ(lines[12].substr(0, 4), "  12");
    EXPECT_EQ(lines[13], lines[0]);
    EXPECT_EQ(lines[14].substr(0, 4), "  13");
    const auto null = std::ranges::find(lines, "Estimating null model ... ");
    ASSERT_LT(null, lines.end() - 1);
    EXPECT_EQ(null[1].substr(0, 4), "   1");
    host.operateModal = [&](CAnalysisModalDialog& dialog) {
        dialog.PutValue(RegIterations, 200);
        dialog.Press(ControlOk);
    };
    host.Press(analysis, ControlCancel);
    ASSERT_TRUE(Ok());
    EXPECT_EQ(Results().estimate.iterations, iterations);
    EXPECT_EQ(Estimates(), continued);
}

TEST_F(ParametricByHand, StartValuesAreThoseOfAllParameters) {
    const std::vector<double> given{1.2, 1.9, 0.9};
    host.startValues = given;
    double ofPlacebo = 0.0; // all of its 21 times are uncensored
    for (std::size_t i = 21; i < 42; ++i)
        ofPlacebo += std::log(host.columns[0].values[i]) / 21;
    host.operateModal = [&](CAnalysisModalDialog& dialog) {
        EXPECT_TRUE(std::get<std::vector<double>>(dialog.Value(RegStartValues)).empty());
        dialog.PutValue(RegStartValues, std::vector<double>{1});
        dialog.Press(ControlOk);
        ExpectMessage(StrRegBadStart, "Numbers that are given: 1; parameters: 3 (drug, Constant, Sigma).");
        dialog.Press(RegEditStartValues);
        EXPECT_EQ(std::get<std::vector<double>>(dialog.Value(RegStartValues)), given);
        // Offered are the number that stands there, and what the uncensored cases give.
        ASSERT_EQ(host.offeredStart.size(), 3U);
        EXPECT_EQ(host.offeredStart[0], 1.0);
        EXPECT_NEAR(host.offeredStart[1], ofPlacebo, 1e-9);
        EXPECT_GT(host.offeredStart[2], 0.0);
        dialog.Press(ControlOk);
        EXPECT_TRUE(dialog.IsClosed());
    };
    ASSERT_TRUE(Fit(lognormal, {3}));
    const double fromThere = Estimates()[0];
    EXPECT_NEAR(fromThere, 1.346847, 1e-3);
    // They are forgotten with another model.
    host.operateModal = [](CAnalysisModalDialog& dialog) { dialog.Press(ControlOk); };
    ASSERT_TRUE(Fit(normal, {3}));
    EXPECT_TRUE(State().settings.startValues.empty());
}

} // namespace
} // namespace ozm::survival
