#pragma once

#include "module/resources/CoxResultTexts.h"
#include "module/resources/ParametricResultTexts.h"
#include "module/resources/RegressionResultTexts.h"
#include "module/resources/Shared.h"

// Results of the regression models.

namespace ozm::survival {

enum RegressionResultsControl : int {
    RegSummaryBox = 1200,
    RegSummary = 1201,
    RegCovariances = 1202,
    RegStratified = 1203,
    RegMeans = 1204,
    RegPlot1 = 1205,
    RegPlot2 = 1206,
    RegUserPlot = 1207,
    RegPlot3 = 1208,
    RegLevel = 1209,
    RegCovariateValues = 1210,
    RegSurvivalTable = 1211,
    RegResiduals = 1212,
    RegProportionality = 1213,
    RegSchoenfeld = 1214,
    RegPlotSchoenfeld = 1215,
    RegForest = 1216,
    RegComparison = 1217,
};

inline constexpr std::uint8_t regressionLevelPages[] = {0, 1};

inline constexpr ControlTemplate regressionResultsControls[] = {
    {.id = RegSummaryBox, .kind = ControlKind::Summary, .text = ""},
    {.id = RegSummary, .text = "!249S&ummary: Parameter estimates", .pages = onFirstPage},
    {.id = RegCovariances,
     .text = "!249&Covariances and correlations of parameter estimates",
     .pages = onFirstPage},
    {.id = RegStratified, .text = "!249Stra&tified analysis", .pages = onFirstPage},
    {.id = RegMeans, .text = "!249&Means and standard deviations", .pages = onFirstPage},
    {.id = RegForest, .text = "!228&Forest plot of ratios exp(beta)", .pages = onFirstPage},
    {.id = RegPlot1, .text = "!228Plot &1", .pages = onSecondPage},
    {.id = RegPlot2, .text = "!228Plot &2", .pages = onSecondPage},
    {.id = RegPlot3, .text = "!228Plot &3", .pages = onSecondPage},
    {.id = RegCovariateValues,
     .kind = ControlKind::NumberList,
     .text = "Covariate &values (. is the mean):",
     .pages = onSecondPage,
     .mayMiss = true,
     .hint = StrRegValuesHint},
    {.id = RegUserPlot, .text = "!228&User-defined plot ...", .pages = onSecondPage},
    {.id = RegSurvivalTable, .text = "!249&Survival table", .pages = onSecondPage},
    {.id = RegResiduals, .text = "!249&Residuals", .pages = onSecondPage},
    {.id = RegProportionality, .text = "!249&Test of proportional hazards", .pages = onThirdPage},
    {.id = RegSchoenfeld, .text = "!249&Scaled Schoenfeld residuals", .pages = onThirdPage},
    {.id = RegPlotSchoenfeld, .text = "!228&Plot of scaled Schoenfeld residuals", .pages = onThirdPage},
    {.id = RegComparison, .text = "!249Com&parison of parametric models", .pages = onFirstPage},
    {.id = RegLevel,
     .kind = ControlKind::Real,
     .text = "Conf. &Level:",
     .pages = regressionLevelPages,
     .decimals = 6,
     .isShare = true,
     .range = {.least = 0, .greatest = 1, .withLeast = false, .withGreatest = false},
     .remembered = true},
    cancelButton,
};

inline constexpr std::string_view regressionResultsPages[] = {"Quick", "Plots", "Proportionality"};
inline constexpr DialogTemplate regressionResultsTemplate{3054, "Regression Results", regressionResultsPages,
                                                          regressionResultsControls};

inline constexpr AutomationMember regressionResultsMembers[] = {
    OutputMember("Summary", RegSummary, "Summary, Chi-square, parameter estimates, etc."),
    OutputMember("ParameterCovariancesCorrelations", RegCovariances,
                 "Correlations and covariances of parameter estimates"),
    OutputMember("StratitifiedAnalysis", RegStratified, "Results for stratified analysis"),
    OutputMember("MeansAndStandardDeviations", RegMeans, "Means and standard deviations"),
    OutputMember("Plot1", RegPlot1, "Plot 1 (depends on type model that was fit)"),
    OutputMember("Plot2", RegPlot2, "Plot 2  (depends on type model that was fit)"),
    OutputMember("UserDefinedPlot", RegUserPlot, "Survival function at given values of the covariates"),
    OutputMember("Plot3", RegPlot3, "Plot3 (depends on type model that was fit)"),
    Added({"ConfidenceLevel", MemberKind::Property, MemberType::Real, RegLevel,
           "Confidence level of the limits, between 0 and 1"}),
    Added(
        {"CovariateValues", MemberKind::Property, MemberType::Numbers, RegCovariateValues,
         "Values of the covariates, in their order, for the user-defined plot; nothing, or no number, is the "
         "mean"}),
    Added(OutputMember("SurvivalTable", RegSurvivalTable,
                       "Survival at the means of the covariates: baseline, or fitted and Kaplan-Meier")),
    Added(OutputMember("Residuals", RegResiduals,
                       "Residuals of all cases (depend on type model that was fit)")),
    Added(OutputMember("ProportionalHazardsTest", RegProportionality, "Test of proportional hazards")),
    Added(OutputMember("ScaledSchoenfeldResiduals", RegSchoenfeld, "Scaled Schoenfeld residuals")),
    Added(OutputMember("PlotOfScaledSchoenfeldResiduals", RegPlotSchoenfeld,
                       "Plot of scaled Schoenfeld residuals, one per covariate")),
    Added(OutputMember("ForestPlot", RegForest,
                       "Ratios exp(beta), of hazards or survival times, with their limits")),
    Added(OutputMember(
        "ModelComparison", RegComparison,
        "Exponential, lognormal and normal model of the same cases: log-likelihoods, Akaike's criterion")),
};
inline constexpr AutomationInterface regressionResultsInterface{"SurRegressionResults", "CRegResultsDlg",
                                                                "Survival Analysis regression results dialog",
                                                                regressionResultsMembers};

} // namespace ozm::survival
