// From the specification of a regression to its estimates: selections, preparation of the data, the dialogs
// of the estimation, messages.

#include "module/regression/RegEstDlg.h"
#include "module/resources/Regression.h"
#include "module/resources/Shared.h"
#include "tests/module/AnalysisFixture.h"

#include <algorithm>
#include <cmath>

namespace ozm::survival {
namespace {

using List = AutomationValue::List;
using test::none;

class RunRegression : public test::CoxFixture {
protected:
    RegressionResults& Results() { return State().results; }
    /// Covariates and strata by the numbers of their variables.
    void Select(const List& covariates, const List& strata = {}) {
        Specify();
        host.Script().Put("Variables", List{List{1}, List{2}, covariates, strata});
    }
    /// Whether OK then leads to estimates.
    bool Fit(const List& covariates, const List& strata = {}) {
        Select(covariates, strata);
        return Ok();
    }
    bool Ok() {
        host.messages.clear();
        host.notes.clear();
        host.iterations.clear();
        host.Press(analysis, ControlOk);
        return Results().held;
    }
    /// Data with one covariate.
    void Cases(std::vector<double> times, std::vector<double> complete, std::vector<double> x) {
        host.columns = of.columns;
        host.columns.resize(3);
        host.columns[0].values = std::move(times);
        host.columns[1].values = std::move(complete);
        host.columns[2].values = std::move(x);
    }
    void ExpectMessage(int id, const std::string& detail) {
        ASSERT_EQ(host.messages.size(), 1U);
        EXPECT_EQ(host.messages[0].id, id);
        EXPECT_NE(host.messages[0].detail.find(detail), std::string::npos) << host.messages[0].detail;
    }
};

TEST_F(RunRegression, TheTrialOf6MP) {
    ASSERT_TRUE(Fit({3}));
    EXPECT_NEAR(Results().estimates[0], -1.509191, 2e-4);
    EXPECT_NEAR(Results().estimate.nullLogLikelihood, -93.98505, 5e-6);
    EXPECT_NEAR(Results().estimate.logLikelihood, -86.37962, 5e-6);
    EXPECT_EQ(host.statusTexts,
              (std::vector<std::string>{" Reading data file ... ", "", " Sorting ... ", "Computing...", ""}));
    ASSERT_GT(host.iterations.size(), 2U);
    EXPECT_EQ(host.iterations[0], "Iteration  Log-Likelihood  Parameters     ");
    EXPECT_EQ(host.iterations[1], "   1 -93.985       0");
    EXPECT_EQ(std::ssize(host.iterations), Results().estimate.iterations + 2);
    // Three copies of each case: ties, which leave the estimate and share out its variance.
    const double once = Results().estimates[0];
    const double variance = Results().estimate.covariance(0, 0);
    host.columns[3].values.assign(42, 3);
    host.weight = 4;
    ASSERT_TRUE(Fit({3}));
    EXPECT_EQ(Results().sample.Cases(), 126U);
    EXPECT_NEAR(Results().estimates[0], once, 1e-9);
    EXPECT_NEAR(Results().estimate.covariance(0, 0), variance / 3, 1e-9);
}

TEST_F(RunRegression, StrataAreAllCodesOrThoseChosen) {
    host.columns[3].values[0] = none;
    host.columns[3].values[1] = 7;
    host.columns[0].values[1] = -1; // the only case of stratum 7 is not valid
    ASSERT_TRUE(Fit({3}, {4}));
    EXPECT_EQ(Results().strata, (std::vector<double>{1, 2}));
    EXPECT_EQ(Results().sample.Cases(), 40U);
    EXPECT_EQ(Results().sample.Ordered().blocks.size(), 2U);
    ASSERT_EQ(host.notes.size(), 2U);
    EXPECT_NE(host.notes[0].find("1 with no value of 'sex'"), std::string::npos) << host.notes[0];
    EXPECT_NE(host.notes[1].find("has 7 of 'sex'"), std::string::npos) << host.notes[1];
    Select({3}, {4});
    host.Script().Put("Codes", List{2, 9});
    ASSERT_TRUE(Ok());
    EXPECT_EQ(Results().strata, (std::vector<double>{2}));
    EXPECT_EQ(Results().reading.otherStratum, 21);
    EXPECT_NE(host.notes[0].find("other than 2 or 9"), std::string::npos) << host.notes[0];
    Select({3}, {4});
    host.Script().Put("Codes", List{2, 2});
    EXPECT_FALSE(Ok());
    ExpectMessage(StrRegBadStratum, "Code 2 is given twice.\nCodes of 'sex'");
}

TEST_F(RunRegression, MissingCovariatesAreLeftOutOrReplaced) {
    host.columns[2].values[3] = none;
    host.columns[3].missingCode = 2;
    ASSERT_TRUE(Fit({3, 4}) || !host.messages.empty());
    ExpectMessage(StrRegConstantCovariate, "'sex' is 1 in all 22 valid cases.");
    host.columns[3].missingCode = none;
    host.columns[3].values[4] = none;
    ASSERT_TRUE(Fit({3, 4}));
    EXPECT_EQ(Results().sample.Cases(), 40U);
    EXPECT_EQ(Results().missing, (std::vector<std::int32_t>{1, 1}));
    EXPECT_NE(host.notes[0].find("2 with no value of 'drug' or 'sex'"), std::string::npos) << host.notes[0];
    EXPECT_NE(host.notes[1].find("'drug': 1, 'sex': 1"), std::string::npos) << host.notes[1];
    Select({3, 4});
    host.Script().Put("MeanSubstitutionOfMD", true);
    EXPECT_EQ(host.Script().Get("CasewiseDeletionOfMD").value, AutomationValue{false});
    ASSERT_TRUE(Ok());
    EXPECT_EQ(Results().sample.Cases(), 42U);
    EXPECT_DOUBLE_EQ(Results().sample.Summary(0).mean, 20.0 / 41);
    const auto column = std::as_const(Results().sample).Column(0);
    EXPECT_EQ(std::ranges::count(column, Results().sample.Summary(0).mean), 1);
    // Hardly any values: the covariate is named, not the number of valid cases.
    std::fill(host.columns[3].values.begin() + 1, host.columns[3].values.end(), none);
    for (const bool casewise : {true, false}) {
        Select({3, 4});
        host.Script().Put("CasewiseDeletionOfMD", casewise);
        EXPECT_FALSE(Ok());
        ExpectMessage(StrRegFewValues, "Cases with a value of 'sex': 1, of 42 that");
    }
}

TEST_F(RunRegression, ChecksItsData) {
    struct {
        std::vector<double> times, complete, x;
        int message;
        const char* detail;
    } const rows[] = {
        {{1, 2}, {1, 1}, {1, 2}, StrRegTooFewValid, "Three valid observations are needed."},
        {{1, 2, 3}, {0, 0, 0}, {1, 2, 3}, StrRegNoUncensored, "are the two codes exchanged?"},
        {{1, 2, 3}, {0, 1, 0}, {1, 2, 3}, StrRegTooFewUncensored, "1 of 3 valid cases is uncensored."},
        {{1, 2, 3}, {1, 1, 0}, {1, none, none}, StrRegFewValues, "Cases with a value of 'drug': 1, of 3"},
        {{1, 2, 3}, {1, 1, 0}, {4, 4, 4}, StrRegConstantCovariate, "'drug' is 4 in all 3"},
        {{1, 2, 3}, {1, 1, 0}, {1e300, -1e300, 2}, StrRegBadScale, "'drug' goes from -1e+300 to 1e+300"},
        {{1, 2, 3}, {1, 1, 0}, {1e-155, 0, 2e-155}, StrRegBadScale, "express it in other units"},
        {{5, 5, 5}, {1, 1, 0}, {1, 2, 3}, StrRegConstantTimes, "All 3 valid cases have the survival time 5."},
    };
    for (const auto& row : rows) {
        Cases(row.times, row.complete, row.x);
        EXPECT_FALSE(Fit({3}));
        ExpectMessage(row.message, row.detail);
        EXPECT_EQ(host.outstanding, 0);
        EXPECT_EQ(host.Dialog().Template().number, 3048);
    }
    // The covariates of a nearly constant column keep their digits.
    Cases({1, 2, 3, 4, 5}, {1, 1, 1, 1, 0}, {1e9 + 1, 1e9 + 2, 1e9, 1e9 + 3, 1e9 + 1});
    EXPECT_TRUE(Fit({3}));
    const double large = Results().estimates[0];
    Cases({1, 2, 3, 4, 5}, {1, 1, 1, 1, 0}, {1, 2, 0, 3, 1});
    EXPECT_TRUE(Fit({3}));
    EXPECT_NEAR(Results().estimates[0], large, 1e-9);
    // Room for 32,000 cases.
    for (const int more : {0, 1}) {
        Cases({}, {}, {});
        for (int i = 0; i < 32000 + more; ++i) {
            host.columns[0].values.push_back((i * 31) % 977);
            host.columns[1].values.push_back(i % 2);
            host.columns[2].values.push_back((i * 17) % 101);
        }
        EXPECT_EQ(Fit({3}), more == 0);
        if (more > 0) ExpectMessage(StrTooManyCases32000, "32,000");
    }
}

TEST_F(RunRegression, RefusesSelectionsThatMakeNoModel) {
    Specify();
    const auto refusedWith = [this](const List& covariates, int message, const std::string& detail) {
        host.Script().Put("Variables", List{List{1}, List{2}, covariates, List{4}});
        EXPECT_FALSE(Ok());
        EXPECT_FALSE(host.Dialog().IsClosed());
        ExpectMessage(message, detail);
    };
    refusedWith({}, StrRegNoCovariates, "");
    refusedWith({3, 3}, StrRegCovariateTwice, "'drug' is both a covariate and another one.");
    refusedWith({1}, StrRegCovariateTwice, "a time variable");
    refusedWith({2}, StrRegCovariateTwice, "the censoring indicator");
    refusedWith({3, 4}, StrRegCovariateTwice, "the stratification variable");
}

TEST_F(RunRegression, NamesWhatTheDataDoNotDetermine) {
    // The likelihood rises for ever: everyone who dies has the smallest value of all at risk.
    Cases({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}, {1, 0, 1, 0, 1, 0, 0, 0, 0, 0, 0, 0},
          {0, 1, 0, 1, 0, 1, 0, 1, 0, 1, 0, 1});
    EXPECT_FALSE(Fit({3}));
    ASSERT_EQ(host.messages.size(), 1U);
    EXPECT_NE(
        host.messages[0].detail.find("The coefficient of 'drug' grows without bound: at every uncensored "
                                     "time the case that fails has the smallest value"),
        std::string::npos)
        << host.messages[0].detail;
    // Only the difference of two covariates is.
    host.columns.push_back({"sex", {5, 4, 1, 8, 2, 3, 9, 1, 4, 7, 5, 2}});
    for (std::size_t i = 0; i < 12; ++i)
        host.columns[2].values[i] += host.columns[3].values[i];
    EXPECT_FALSE(Fit({3, 4}));
    ASSERT_EQ(host.messages.size(), 1U);
    EXPECT_NE(
        host.messages[0].detail.find("The coefficients of 'drug' and 'sex' grow without bound together"),
        std::string::npos)
        << host.messages[0].detail;
    // A covariate that is constant within strata.
    host.columns[3].values = {0, 1, 0, 1, 0, 1, 0, 1, 0, 1, 0, 1};
    for (std::size_t i = 0; i < 12; ++i)
        host.columns[2].values[i] = 7.1 + 1.3 * host.columns[3].values[i];
    EXPECT_FALSE(Fit({3}, {4}));
    ExpectMessage(StrRegSingular, "'drug' is the same, within each stratum, in all cases that are at risk");
    // One that has no effect at all: its coefficient is 0 to rounding, and that is an end.
    Cases({1, 2, 3, 4, 1, 2, 3, 4, 1, 2, 3, 4}, {1, 0, 1, 1, 1, 0, 1, 1, 1, 0, 1, 1},
          {.1, .1, .1, .1, .2, .2, .2, .2, .7, .7, .7, .7});
    EXPECT_TRUE(Fit({3}));
    EXPECT_NEAR(Results().estimates[0], 0.0, 1e-12);
    // One covariate is twice another plus a constant.
    host.columns = of.columns;
    host.columns.push_back({"double", {}});
    for (std::size_t i = 0; i < 42; ++i)
        host.columns[4].values.push_back(2 * host.columns[2].values[i] + 5);
    EXPECT_FALSE(Fit({4, 3, 5}));
    ExpectMessage(StrRegSingular, "'double' depends on the covariates before it ('drug')");
}

TEST_F(RunRegression, AScriptGetsTheEstimationThatItAskedFor) {
    ASSERT_TRUE(Fit({3}));
    EXPECT_TRUE(host.modal.empty());
    double single = 0;
    host.operateModal = [&](CAnalysisModalDialog& dialog) {
        AutomationObject script(dialog);
        EXPECT_TRUE(script.Put("MaxNumberOfIterations", 200).ok);
        EXPECT_TRUE(script.Put("ConvergenceCriterion", 0.00001).ok);
        EXPECT_TRUE(script.Put("StartValues", List{-1.0}).ok);
        single = std::get<double>(script.Get("ConvergenceCriterion").value.value);
    };
    Specify();
    host.Script().Put("NonDefaultStartValuesIterations", true);
    ASSERT_TRUE(Ok());
    EXPECT_EQ(host.modal, (std::vector<int>{3019}));
    EXPECT_EQ(host.iterations[1].find(" 0"), std::string::npos) << "it starts elsewhere";
    EXPECT_EQ(single, 0.00001);
    EXPECT_EQ(Results().criterion, double{0.00001F});
    EXPECT_EQ(State().settings.maximumIterations, 200);
    EXPECT_EQ(AsTyped(Results().criterion), 0.00001); // and so it is accepted when it comes back
    EXPECT_EQ(State().settings.startValues, (std::vector<double>{-1}));
    const double asked = Results().estimates[0];
    // A run that does not ask begins with the defaults, whatever an earlier one was given.
    for (const bool off : {false, true}) {
        host.Press(analysis, ControlCancel);
        if (off) host.Script().Put("NonDefaultStartValuesIterations", false);
        ASSERT_TRUE(Ok());
        EXPECT_EQ(host.modal.size(), 1U);
        EXPECT_EQ(Results().criterion, 0.0001);
        EXPECT_EQ(State().settings.maximumIterations, 50);
        EXPECT_NE(Results().estimates[0], asked);
    }
    EXPECT_EQ(RegEstDlg::TemplateFor(6, RegressionKind::ProportionalHazards).number, 3021);
    EXPECT_EQ(RegEstDlg::TemplateFor(2, RegressionKind::Normal).number, 3019);
    EXPECT_EQ(RegEstDlg::TemplateFor(4, RegressionKind::ProportionalHazards).number, 3020);
}

TEST_F(RunRegression, AStratumWithoutAMaximumHasNoFitOfItsOwn) {
    Cases({1, 2, 3, 4, 5, 1, 2, 3, 4}, {1, 1, 1, 1, 0, 1, 1, 0, 1}, {5, 4, 3, 2, 1, 2, 5, 3, 1});
    host.columns.push_back({"s", {1, 1, 1, 1, 1, 2, 2, 2, 2}});
    ASSERT_TRUE(Fit({3}, {4}));
    EXPECT_TRUE(host.messages.empty()); // the common likelihood has a maximum
    ASSERT_TRUE(host.Script().Call("StratitifiedAnalysis").ok);
    ASSERT_EQ(host.sheets.size(), 2U);
    EXPECT_EQ(host.sheets[0].texts.back(),
              (std::vector<std::string>{"the estimates of drug grow without bound", ""}));
    EXPECT_TRUE(std::isnan(host.sheets[1].numbers.back()[0])) << "no test with it";
}

TEST_F(RunRegression, AFailureCountsTheIterationsOfAllRuns) {
    Cases({1, 2, 3, 4, 5, 6}, {1, 0, 1, 0, 1, 0}, {0, 1, 0, 1, 0, 1});
    host.yes = 1;
    host.operateModal = [](CAnalysisModalDialog& dialog) {
        AutomationObject(dialog).Put("MaxNumberOfIterations", 3);
    };
    Select({3});
    host.Script().Put("NonDefaultStartValuesIterations", true);
    EXPECT_FALSE(Ok());
    ExpectMessage(StrRegNotConverged, "Iterations: 34, and 38 in all; the last of them:");
}

/// A person: nothing runs by itself.
class RegressionByHand : public RunRegression {
protected:
    void SetUp() override {
        RunRegression::SetUp();
        host.automation = false;
    }
};

TEST_F(RegressionByHand, CriterionAndIterationsAreCheckedAndReset) {
    struct {
        double criterion;
        int iterations;
        int message;
    } const rows[] = {
        {0.000009, 50, StrRegBadCriterion}, {1, 50, StrRegBadCriterion}, {0.00001, 2, StrRegBadIterations},
        {0.9, 201, StrRegBadIterations},    {0.00001, 200, 0},           {0.9, 3, 0}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.criterion);
        host.operateModal = [&](CAnalysisModalDialog& dialog) {
            dialog.PutValue(RegCriterion, row.criterion);
            dialog.PutValue(RegIterations, row.iterations);
            dialog.Press(ControlOk);
            EXPECT_EQ(dialog.IsClosed(), row.message == 0);
            if (row.message == 0) return;
            ExpectMessage(row.message, "");
            EXPECT_EQ(std::get<double>(dialog.Value(RegCriterion)),
                      row.message == StrRegBadCriterion ? 0.0001 : row.criterion);
            EXPECT_EQ(std::get<int>(dialog.Value(RegIterations)), 50);
            EXPECT_TRUE(Results().prepared);
            dialog.Press(ControlCancel);
        };
        EXPECT_EQ(Fit({3}), row.message == 0);
        if (row.message != 0) {
            EXPECT_EQ(host.Dialog().Template().number, 3048);
        }
    }
}

TEST_F(RegressionByHand, MoreIterationsStartWhereTheOthersEnded) {
    std::vector<std::string> lines;
    host.operateModal = [&](CAnalysisModalDialog& dialog) {
        dialog.PutValue(RegCriterion, 0.00001);
        dialog.PutValue(RegIterations, 3);
        dialog.Press(ControlOk);
        EXPECT_FALSE(dialog.IsClosed()); // the answer was no, and there is nothing more to say
        EXPECT_TRUE(host.messages.empty());
        EXPECT_EQ(host.questionsAsked, (std::vector<int>{StrRegMoreIterations}));
        EXPECT_EQ(host.iterations.size(), 5U); // a header and four iterations
        host.yes = 1;
        host.iterations.clear();
        dialog.Press(ControlOk);
        lines = host.iterations;
        EXPECT_TRUE(dialog.IsClosed());
        EXPECT_EQ(std::get<int>(dialog.Value(RegIterations)), 33);
    };
    ASSERT_TRUE(Fit({3}));
    EXPECT_EQ(State().settings.maximumIterations, 33);
    ASSERT_GT(lines.size(), 7U);
    EXPECT_EQ(lines[5], lines[0]); // the second run: its header, and it starts where the first one ended
    EXPECT_NE(lines[6].substr(4), lines[1].substr(4));
    EXPECT_LT(lines[4].substr(5, 7), lines[1].substr(5, 7)) << "the log-likelihood has come nearer to zero";
}

TEST_F(RegressionByHand, StartValuesFarOutHaveNoLikelihood) {
    host.startValues = {-1.2};
    host.operateModal = [&](CAnalysisModalDialog& dialog) {
        dialog.PutValue(RegStartValues, std::vector<double>{1, 2});
        dialog.Press(ControlOk);
        ExpectMessage(StrRegBadStart, "Numbers that are given: 2; parameters: 1 (drug).");
        host.messages.clear();
        dialog.PutValue(RegStartValues, std::vector<double>{600.0});
        dialog.Press(ControlOk);
        EXPECT_EQ(host.messages.back().id, StrRegNoLikelihood);
        EXPECT_FALSE(dialog.IsClosed());
        dialog.Press(RegEditStartValues);
        EXPECT_EQ(std::get<std::vector<double>>(dialog.Value(RegStartValues)), host.startValues);
        dialog.Press(ControlOk);
        EXPECT_TRUE(dialog.IsClosed());
    };
    EXPECT_TRUE(Fit({3}));
}

TEST_F(RegressionByHand, ValuesBelongToTheCovariatesThatTheyWereGivenFor) {
    host.operateModal = [&](CAnalysisModalDialog& dialog) {
        dialog.PutValue(RegStartValues, std::vector<double>{-1});
        dialog.Press(ControlOk);
    };
    ASSERT_TRUE(Fit({3}));
    State().output.covariateValues = {1};
    host.operateModal = [&](CAnalysisModalDialog& dialog) { dialog.Press(ControlOk); };
    host.Press(analysis, ControlCancel);
    ASSERT_TRUE(Ok()); // the same covariate
    EXPECT_EQ(State().settings.startValues, (std::vector<double>{-1}));
    EXPECT_EQ(State().output.covariateValues, (std::vector<double>{1}));
    host.Press(analysis, ControlCancel);
    host.Dialog().PutValue(SpecifyVariables, VariableSelection{{1}, {2}, {4}, {}});
    ASSERT_TRUE(Ok());
    EXPECT_TRUE(State().settings.startValues.empty());
    EXPECT_TRUE(State().output.covariateValues.empty());
}

TEST_F(RegressionByHand, WithDefaultsTheOtherDialogEstimates) {
    Specify();
    host.Dialog().PutValue(RegNonDefault, false);
    ASSERT_EQ(host.Press(analysis, ControlOk), StepRegSpec);
    EXPECT_EQ(host.Dialog().Template().number, 3051);
    EXPECT_EQ(std::get<std::string>(host.Dialog().Value(RegModelInWords)),
              "Proportional hazard (Cox) regression\nSurvival times: weeks\nCensoring indicator: relapse\n"
              "Covariates: drug");
    EXPECT_EQ(host.Press(analysis, ControlCancel), StepSpecifyRegression);
    ASSERT_EQ(host.Press(analysis, ControlOk), StepRegSpec);
    host.columns[2].values.assign(42, 1.0);
    EXPECT_EQ(host.Press(analysis, ControlOk), -1); // it stays
    EXPECT_EQ(host.messages.back().id, StrRegConstantCovariate);
    host.columns = of.columns;
    EXPECT_TRUE(Ok());
    EXPECT_TRUE(host.modal.empty());
}

} // namespace
} // namespace ozm::survival
