// Proportional hazards models with covariates that expressions define, from the dialog to the results: the
// numbers of an independent program, and what the driver and the outputs do with the expressions.

#include "module/resources/RegressionResults.h"
#include "module/resources/TimeDependent.h"
#include "module/survdata/ReportLines.h"
#include "tests/module/AnalysisFixture.h"
#include "tests/module/regression/CoxCases.h"
#include "tests/module/regression/GoldenRows.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace ozm::survival {
namespace {

using List = AutomationValue::List;
using test::none;

const korvana::golden::Table& Golden() {
    static const auto table = korvana::golden::Table::read("cox-time.csv");
    return table;
}

class RunTimeDependent : public test::AnalysisFixture {
protected:
    RunTimeDependent() : AnalysisFixture(test::coxTime) {}
    RegressionResults& Results() { return ModuleState().regression.results; }
    void Select(const List& expressions, const List& strata = {}) {
        Specify();
        host.Script().Put("Variables", List{List{1}, List{2}, strata});
        List names;
        for (std::size_t k = 0; k < expressions.size(); ++k)
            names.emplace_back("c" + std::to_string(k + 1));
        host.Script().Put("TimeDependentCovariateNames", names);
        host.Script().Put("TimeDependentCovariateExpressions", expressions);
    }
    /// The model whose covariates are variables.
    void SelectFixed(const List& covariates) {
        host.Go(analysis, StepInitialize);
        host.Script().Put("TypeOfAnalysis", test::coxRegression.entry);
        host.Press(analysis, ControlOk);
        host.Script().Put("Variables", List{List{1}, List{2}, covariates, List{}});
        host.Script().Put("CodeForCompleteResponses", 1);
        host.Script().Put("CodeForCensoredResponses", 0);
    }
    bool Ok() {
        host.messages.clear();
        host.notes.clear();
        host.Press(analysis, ControlOk);
        return Results().held;
    }
    bool Fit(const List& expressions, const List& strata = {}) {
        Select(expressions, strata);
        return Ok();
    }
    /// The estimates, and the log-likelihood.
    Values Estimates() {
        Values all = Results().estimates;
        all.push_back(Results().estimate.logLikelihood);
        return all;
    }
    bool Make(const char* output) {
        host.messages.clear();
        host.sheets.clear();
        return host.Script().Call(output).value == AutomationValue{true};
    }
    static const Values& Column(const test::Sheet& sheet, const std::string& id) {
        return sheet.numbers.at(PlaceOf(sheet.ids, id));
    }
    static void ExpectNear(const Values& ours, const Values& expected, double precision) {
        ASSERT_EQ(ours.size(), expected.size());
        for (std::size_t k = 0; k < ours.size(); ++k)
            EXPECT_NEAR(ours[k], expected[k], precision * std::max(1.0, std::abs(expected[k]))) << k;
    }
    void ExpectMessage(int id, const std::string& detail) {
        ASSERT_EQ(host.messages.size(), 1U);
        EXPECT_EQ(host.messages[0].id, id);
        EXPECT_NE(host.messages[0].detail.find(detail), std::string::npos) << host.messages[0].detail;
    }
    void EveryGoldenRunOf(const std::string& dataset);
};

void RunTimeDependent::EveryGoldenRunOf(const std::string& dataset) {
    SCOPED_TRACE(dataset);
    const std::string run = "1e-4"; // the criterion that the dialog begins with
    const CoxCases cases = CasesIn(dataset, Golden());
    host.columns = {{"t", cases.time}, {"status", cases.status}};
    for (std::size_t k = 0; k < cases.x.size(); ++k)
        host.columns.push_back({cases.names[k], cases.x[k]});
    if (!cases.code.empty()) host.columns.push_back({"code", cases.code});
    const std::vector<GoldenRow> golden = GoldenRowsOf(Golden(), dataset);
    std::vector<std::string> expressions;
    std::map<std::string, double> values;
    for (const GoldenRow& row : golden) {
        if (row.run != run) continue;
        if (row.quantity == "start") expressions.push_back(row.of);
        values[row.quantity + (row.quantity == "without_value" ? row.of : "")] = row.value;
    }
    const List strata = cases.code.empty() ? List{} : List{static_cast<int>(host.columns.size())};
    const bool held = Fit({expressions.begin(), expressions.end()}, strata);
    ASSERT_EQ(held, values["status"] == 0);
    if (values["status"] == 101) {
        EXPECT_EQ(host.messages.at(0).id, StrRegSingular);
    }
    if (values["status"] == 200) {
        std::size_t k = 0;
        while (values["without_value" + expressions.at(k)] != 1)
            ++k;
        ExpectMessage(StrRegInvalidOperation, "'c" + std::to_string(k + 1) +
                                                  "' cannot be computed for case " +
                                                  FormatExact(values["without_value_case"]) + " at time " +
                                                  FormatExact(values["without_value_time"]) + ".");
    }
    if (!held) return;
    const RegressionResults& results = Results();
    Agree(golden, run,
          {{"iterations", {[&](const GoldenRow&) { return results.estimate.iterations; }}},
           {"loglik", {[&](const GoldenRow&) { return results.estimate.logLikelihood; }}},
           {"loglik_null", {[&](const GoldenRow&) { return results.estimate.nullLogLikelihood; }}},
           {"beta",
            {[&](const GoldenRow& row) { return results.estimates[PlaceOf(expressions, row.of)]; }, 1e-6}},
           {"covariance", {[&](const GoldenRow& row) {
                return results.estimate.covariance(row.row - 1, PlaceOf(expressions, row.of));
            }}}},
          1e-9);
}

TEST_F(RunTimeDependent, EveryGoldenRun) {
    std::set<std::string> datasets;
    const auto names = Golden().texts("dataset");
    const auto runs = Golden().texts("run");
    for (std::size_t i = 0; i < names.size(); ++i)
        if (runs[i] == "1e-4") datasets.insert(names[i]);
    EXPECT_EQ(datasets.size(), 12U);
    for (const std::string& dataset : datasets)
        EveryGoldenRunOf(dataset);
}

TEST_F(RunTimeDependent, TheSummaryHasThePublishedNumbers) {
    EveryGoldenRunOf("leukaemia"); // 6-MP: Rx 1.514858 (.414500), Rx*(t-10) -.008135 (.061282)
    ASSERT_TRUE(Make("Summary"));
    const test::Sheet& estimates = host.sheets.back();
    EXPECT_EQ(estimates.rowHeadings, (std::vector<std::string>{"c1", "c2"}));
    ExpectNear(Column(estimates, "beta"), {1.514858, -0.008135}, 2e-5);
    ExpectNear(Column(estimates, "standardError"), {0.414500, 0.061282}, 2e-5);
    for (const char* text : {"c2 = rx*(T_-10)", "-86.37076", "-93.98505"})
        EXPECT_NE(host.report.find(text), std::string::npos) << host.report;
}

TEST_F(RunTimeDependent, WithoutTheTimeItIsTheFixedModel) {
    for (const auto& [expressions, covariates] :
         {std::pair<List, List>{{"drug"}, {3}}, {{"drug", "v4"}, {3, 4}}, {{"drug + 10"}, {3}}}) {
        ASSERT_TRUE(Fit(expressions)) << host.messages.at(0).detail;
        const Values defined = Estimates();
        const int iterations = Results().estimate.iterations;
        SelectFixed(covariates);
        ASSERT_TRUE(Ok());
        ExpectNear(defined, Estimates(), 1e-9);
        EXPECT_EQ(iterations, Results().estimate.iterations);
    }
}

TEST_F(RunTimeDependent, StrataAloneAreTheFitsOfTheirCases) {
    const List expressions{"drug", "drug*T_"};
    Select(expressions, {4});
    host.Script().Put("EqualCoefficientsDifferentBaselineH0", false);
    ASSERT_TRUE(Ok());
    ASSERT_TRUE(Make("StratitifiedAnalysis"));
    ASSERT_EQ(host.sheets.size(), 3U);
    const Values beta = Column(host.sheets[2], "beta");
    const Values likelihood = Column(host.sheets[0], "logLikelihood");
    Values alone;
    Values likelihoods;
    const std::vector<double> sex = host.columns[3].values;
    for (const double stratum : {1.0, 2.0}) {
        host.selected.clear();
        for (const double each : sex)
            host.selected.push_back(each == stratum);
        ASSERT_TRUE(Fit(expressions));
        alone.insert(alone.end(), Results().estimates.begin(), Results().estimates.end());
        likelihoods.push_back(Results().estimate.logLikelihood);
    }
    ExpectNear(beta, alone, 1e-9);
    ExpectNear(likelihood, likelihoods, 1e-12);
}

TEST_F(RunTimeDependent, MeansAreThoseAtTheCasesOwnTimes) {
    ASSERT_TRUE(Fit({"drug", "sex*(T_-10)", "drug*(T_ > 10)"}));
    ASSERT_TRUE(Make("MeansAndStandardDeviations"));
    Values means;
    Values deviations;
    for (int k = 0; k < 3; ++k) {
        Values values;
        for (std::size_t i = 0; i < 42; ++i) {
            const double t = host.columns[0].values[i];
            const double each[] = {host.columns[2].values[i], host.columns[3].values[i] * (t - 10),
                                   host.columns[2].values[i] * (t > 10 ? 1 : 0)};
            values.push_back(each[k]);
        }
        means.push_back(std::accumulate(values.begin(), values.end(), 0.0) / 42);
        double squares = 0;
        for (const double each : values)
            squares += (each - means.back()) * (each - means.back());
        deviations.push_back(std::sqrt(squares / 41));
    }
    ExpectNear(Column(host.sheets.at(0), "mean"), means, 1e-12);
    ExpectNear(Column(host.sheets.at(0), "standardDeviation"), deviations, 1e-12);
}

TEST_F(RunTimeDependent, MissingValuesAreThoseOfTheVariablesReferredTo) {
    const List expressions{"drug*sex", "drug*T_"};
    host.columns[3].values[5] = none;
    ASSERT_TRUE(Fit({"drug"}));
    EXPECT_EQ(Results().sample.Cases(), 42U) << "'sex' is in no expression";
    ASSERT_TRUE(Fit(expressions));
    EXPECT_EQ(Results().sample.Cases(), 41U);
    EXPECT_NE(host.notes.at(0).find("1 with no value of 'drug' or 'sex'"), std::string::npos)
        << host.notes[0];
    const Values casewise = Estimates();
    host.selected.assign(42, true);
    host.selected[5] = false;
    ASSERT_TRUE(Fit(expressions));
    EXPECT_EQ(Estimates(), casewise);
    host.selected.clear();
    Select(expressions);
    host.Script().Put("MeanSubstitutionOfMD", true);
    ASSERT_TRUE(Ok());
    EXPECT_EQ(Results().sample.Cases(), 42U);
    const Values substituted = Estimates();
    host.columns[3].values[5] = Results().sample.Summary(PlaceOf(Results().variableNames, "sex")).mean;
    ASSERT_TRUE(Fit(expressions));
    ExpectNear(substituted, Estimates(), 1e-12);
}

TEST_F(RunTimeDependent, OutputsThatNeedFixedCovariatesAreRefusedByName) {
    ASSERT_TRUE(Fit({"drug"}));
    for (const std::string_view output : of.without) {
        SCOPED_TRACE(output);
        EXPECT_FALSE(Make(std::string{output}.c_str()));
        ASSERT_EQ(host.messages.size(), 1U);
        const bool strata = output == "StratitifiedAnalysis";
        EXPECT_EQ(host.messages[0].id, strata ? StrRegNotStratified : StrRegNotOfModel);
        EXPECT_NE(host.messages[0].detail.find("(" + std::string{output} + ")."), std::string::npos);
        const bool told = host.messages[0].detail.find("time-dep") != std::string::npos;
        EXPECT_NE(told, strata) << host.messages[0].detail;
    }
    EXPECT_TRUE(host.charts.empty() && host.sheets.empty());
    host.automation = false;
    host.Go(analysis, StepRegressionResults);
    for (const AutomationMember& member : host.Dialog().Interface()->members) {
        if (member.kind != MemberKind::Action) continue;
        const bool has = std::ranges::find(of.without, member.name) == of.without.end();
        EXPECT_EQ(host.Dialog().IsEnabled(member.control), has) << member.name;
    }
}

TEST_F(RunTimeDependent, WhatEndsAnEstimationIsSaid) {
    struct {
        List expressions;
        int message;
        const char* said;
    } const rows[] = {
        // Of those with x = T_ none dies then.
        {{"T_ < x", "T_ > x"}, StrRegSingular, "'c1' and 'c2' grow without bound together"},
        {{"u", "v"}, StrRegNoLikelihood, "'c1' and 'c2' grow without bound together"},
        {{"x * 1e-170"}, StrRegSingular, "express it in other units"},
        {{"x / 1e8"}, StrRegSingular, "'c1' are of magnitude"},
        {{"x * 1e160"}, StrRegSingular, "express it in other units"},
        {{"if(T_ = 4, x * 1e155, x)"}, StrRegSingular, "express it in other units"},
        {{"x + T_", "x - T_"}, StrRegSingular, "'c2' depends on the covariates before it ('c1')"},
        {{"x", "x * T_ + 1e4"}, StrRegNoLikelihood, "mostly by 'c2'"},
        {{"x + 1e5"}, StrRegNoLikelihood, "mostly by 'c1'"},
    };
    host.columns = {{"t", {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}},
                    {"status", {1, 1, 0, 1, 1, 1, 0, 1, 1, 0, 1, 1}},
                    {"x", {5.5, 9.5, 2.5, 7.5, 1.5, 11.5, 3.5, 8.5, 12.5, 4.5, 9, 4}},
                    {"u", {0.3, -1.2, 0.8, 1.9, -0.4, -2.1, 1.1, 0.2, -0.7, 1.4, -1.6, 0.6}},
                    {"v", {-0.31, 1.18, -0.83, -1.94, 0.35, 2.04, -1.17, -0.28, 0.61, -1.5, 1.49, -0.72}}};
    host.operateModal = [](CAnalysisModalDialog& dialog) {
        AutomationObject(dialog).Put("MaxNumberOfIterations", 200);
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.said);
        Select(row.expressions);
        host.Script().Put("NonDefaultStartValuesIterations", true);
        EXPECT_FALSE(Ok());
        ASSERT_FALSE(host.messages.empty());
        EXPECT_EQ(host.messages.back().id, row.message);
        const std::string all = host.messages.back().text + host.messages.back().detail;
        EXPECT_NE(all.find(row.said), std::string::npos) << all;
        const bool advises = all.find("subtract a constant") != std::string::npos;
        EXPECT_EQ(advises, std::string_view{row.said}.starts_with("mostly")) << all;
    }
}

TEST_F(RunTimeDependent, TheEstimationDialogStartsByNameAndReviewsTheExpressions) {
    host.automation = false;
    host.startValues = {-1.5, 0.01};
    host.operateModal = [&](CAnalysisModalDialog& dialog) {
        EXPECT_TRUE(dialog.Press(RegReviewExpressions).succeeded);
        ASSERT_EQ(host.sheets.size(), 1U);
        EXPECT_EQ(host.sheets[0].title, "Cox Proportional Hazard Model with Time-Dependent Covariates");
        EXPECT_EQ(host.sheets[0].texts,
                  (std::vector<std::vector<std::string>>{{"c1", "c2"}, {"drug", "drug*T_"}}));
        EXPECT_TRUE(dialog.Press(RegEditStartValues).succeeded);
        EXPECT_EQ(host.offeredStart, (Values{0, 0}));
        dialog.PutValue(RegStartValues, Values{1});
        dialog.Press(ControlOk);
        ExpectMessage(StrRegBadStart, "parameters: 2 (c1, c2).");
        dialog.PutValue(RegStartValues, host.startValues);
        host.iterations.clear();
        dialog.Press(ControlOk);
        EXPECT_NE(host.iterations.at(1).find("-1.5"), std::string::npos) << host.iterations.at(1);
    };
    EXPECT_TRUE(Fit({"drug", "drug*T_"}));
    host.operateModal = [&](CAnalysisModalDialog& dialog) {
        EXPECT_FALSE(dialog.IsEnabled(RegReviewExpressions)) << "there are none";
        dialog.Press(ControlOk);
    };
    SelectFixed({3});
    EXPECT_TRUE(Ok());
    EXPECT_EQ(host.modal.size(), 2U);
}

TEST_F(RunTimeDependent, ACancelEndsAnEvaluation) {
    constexpr int cases = 1000; // half a million pairs
    ManyCases(cases);
    for (std::size_t i = 0; i < cases; ++i)
        host.columns[2].values[i] = static_cast<double>((i * 7) % 11);
    ASSERT_TRUE(Fit({"drug*(T_-500)/500"}));
    const int all = host.questions;
    const auto evaluations = static_cast<int>(host.iterations.size());
    EXPECT_GT(all, cases + 5 * evaluations) << "it is asked within them";
    EXPECT_FALSE(host.beyondUnits);
    for (const int stop : {cases + 2, cases + 5, (cases + all) / 2}) {
        SCOPED_TRACE(stop);
        host.Press(analysis, ControlCancel);
        host.questions = 0;
        host.stopAt = stop;
        EXPECT_FALSE(Fit({"drug*(T_-500)/500"}));
        EXPECT_LE(host.questions, stop + 1);
        EXPECT_TRUE(host.messages.empty());
        EXPECT_EQ(host.progressShown + host.outstanding, 0);
        host.stopAt = 0;
    }
}

} // namespace
} // namespace ozm::survival
