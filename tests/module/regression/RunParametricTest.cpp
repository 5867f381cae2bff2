// The estimation of the parametric models through the dialogs: what the driver makes of their endings.

#include "module/regression/RegressionModels.h"
#include "module/resources/Regression.h"
#include "module/resources/Shared.h"
#include "tests/module/AnalysisFixture.h"

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
        Specify();
        host.Script().Put("TypeOfSurvivalRegressionModel", model);
        host.Script().Put("Variables", List{List{1}, List{2}, covariates, strata});
        return Ok();
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
    bool FitSo(int model, const List& covariates) {
        Specify();
        host.Script().Put("NonDefaultStartValuesIterations", true);
        return Fit(model, covariates);
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
    Cases({1, 2, 3, 4, 5}, {1, 1, 0, 0, 0}, {{1, 2, 4, 3, 1}, {5, 1, 2, 2, 8}, {1, 1, 1, 2, 1}});
    EXPECT_FALSE(Fit(normal, {3, 4, 5}));
    ExpectMessage(StrRegTooManyParameters, "There are 3 parameters and 2 uncensored cases.");
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
    ExpectMessage(StrRegSingular, "The values of 'sex' differ little for their size (mean 1993");
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
    ExpectMessage(StrRegTooManyIterations, "A step of the iteration went too far");
    // All uncensored cases on a line.
    Cases({1, 2, 3, 4, 5, 9}, {1, 1, 1, 1, 1, 1}, {{1, 2, 3, 4, 5, 9}});
    EXPECT_FALSE(Fit(normal, {3}));
    ExpectMessage(StrRegNoModelLikelihood, "Sigma comes down to 0");
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
