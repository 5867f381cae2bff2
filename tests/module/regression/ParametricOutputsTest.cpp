// What the parametric regressions say about their outputs, and of what they have not; the comparison of the
// models; and numbers that cannot be shown.

#include "module/resources/Regression.h"
#include "module/resources/Resources.h"
#include "tests/module/regression/ParametricResultsFixture.h"

namespace ozm::survival {
namespace {

TEST_F(ParametricResults, SayOnWhichScaleTheyStandAndWhatTheyAre) {
    const std::map<std::string, std::pair<const char*, const char*>> told{
        {"exponential", {"on the scale of time (of the survival times).", "mean survival time changes"}},
        {"lognormal",
         {"on the scale of log time (of the log survival times).", "median survival time changes"}},
        {"normal", {"on the scale of time (of the survival times).", "change of the mean survival time"}}};
    for (const Model& model : parametricModels) {
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
    EXPECT_TRUE(Mentions(SheetOf("Parameter Estimates").notes, "Sigma. Units in which"));
}

TEST_F(ParametricResults, ComparisonOfTheModels) {
    for (const Model& model : parametricModels) {
        OpenGolden("veteran", model);
        ASSERT_TRUE(Make("ModelComparison"));
        const test::Sheet sheet = SheetOf("Comparison of Parametric Models");
        double best = INFINITY;
        for (std::size_t row = 0; row < 3; ++row) {
            const auto cell = [&](const char* id) {
                return At("Comparison of Parametric Models", sheet.rowHeadings[row].c_str(), id, 1.0);
            };
            Agree(golden_, parametricModels[row].name,
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
    OpenGolden("zeros", parametricModels[0]);
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
    for (const Model& model : {parametricModels[0], parametricModels[2]}) {
        OpenGolden("zeros", model);
        for (const char* output : {"Residuals", "Plot1", "Plot2", "Plot3", "SurvivalTable"})
            ASSERT_TRUE(Make(output)) << output;
    }
    OpenGolden("zeros", parametricModels[0]);
    ASSERT_TRUE(Make("Residuals"));
    EXPECT_TRUE(std::isnan(Column(SheetOf("Residuals"), "deviance")[0]));
    EXPECT_EQ(Column(SheetOf("Residuals"), "coxSnell")[0], 0.0);
    EXPECT_TRUE(Mentions(SheetOf("Residuals").notes, "An empty cell (--) is"));
    OpenGolden("veteran", parametricModels[2]);
    const std::size_t karno = PlaceOf(Results().names, "karno");
    AutomationValue::List values(Results().names.size());
    values[karno] = 10;
    ASSERT_TRUE(host.Script().Put("CovariateValues", values).ok);
    ASSERT_TRUE(Make("UserDefinedPlot"));
    const test::Sheet quartiles = SheetOf("Survival Times at Given Values");
    EXPECT_LT(Column(quartiles, "time")[0], 0.0);
    EXPECT_TRUE(Mentions(quartiles.notes, "A time below 0 says that the normal model does not fit here"));
    EXPECT_TRUE(Mentions(host.charts.back().notes, "fail before time 0"));
    // Far away the survival is 1 or 0, and times are beyond the data or beyond doubles.
    OpenGolden("veteran", parametricModels[1]);
    values[karno] = 1e5;
    ASSERT_TRUE(host.Script().Put("CovariateValues", values).ok);
    ASSERT_TRUE(Make("UserDefinedPlot"));
    const test::Sheet far = SheetOf("Survival Times at Given Values");
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
    for (const Model& model : parametricModels) {
        host.report.clear();
        host.sheets.clear();
        Open(CoxCases::Random(400, 40, 1, 7), model.kind, 1e-4);
        for (const AutomationMember& member : host.Dialog().Interface()->members) {
            if (member.kind != MemberKind::Action) continue;
            const bool made = Make(std::string{member.name}.c_str());
            EXPECT_TRUE(made || host.messages.back().id == StrRegNotOfModel) << member.name;
        }
        EXPECT_EQ(SheetOf("Covariances of Parameter Estimates").numbers.size(), Results().Parameters());
        EXPECT_LE(LongestLine(), 80U);
    }
}

} // namespace
} // namespace ozm::survival
