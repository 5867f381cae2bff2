#include "tests/automation/MemberChecks.h"

namespace walk {
namespace {

// Variables of the data, by their numbers; of the table: year, withdrawn, died.
constexpr int weeks = 1;
constexpr int relapse = 2;
constexpr int drug = 3;
constexpr int sex = 4;
constexpr int arm = 5;
constexpr int age = 6;
constexpr int days = 7;

List variables(const std::vector<std::vector<int>>& roles) {
    List all;
    for (const auto& role : roles)
        all.emplace_back(List(role.begin(), role.end()));
    return all;
}

Settings joined(Settings one, const Settings& other) {
    one.insert(one.end(), other.begin(), other.end());
    return one;
}

const Settings codes{{"CodeForCompleteResponses", 1}, {"CodeForCensoredResponses", 0}};

Settings startup(int type) {
    return {{"TypeOfAnalysis", type}};
}

Settings regression(int type, const std::vector<std::vector<int>>& roles) {
    return joined({{"TypeOfSurvivalRegressionModel", type}, {"Variables", variables(roles)}},
                  joined(codes, {{"Codes", List{}},
                                 {"EqualCoefficientsDifferentBaselineH0", true},
                                 {"NonDefaultStartValuesIterations", false},
                                 {"CasewiseDeletionOfMD", true}}));
}

const Settings estimation{
    {"MaxNumberOfIterations", 50}, {"ConvergenceCriterion", 0.0001}, {"StartValues", List{}}};

std::vector<Way> makeWays() {
    const Settings timeDependent =
        joined({{"Variables", variables({{weeks}, {relapse}, {sex}})}},
               joined(codes, {{"Codes", List{}},
                              {"EqualCoefficientsDifferentBaselineH0", true},
                              {"NonDefaultStartValuesIterations", true},
                              {"CasewiseDeletionOfMD", true},
                              {"TimeDependentCovariateNames", List{"Rx", "Age"}},
                              {"TimeDependentCovariateExpressions", List{"drug", "age / 10"}}}));
    Settings asked = regression(1, {{weeks}, {relapse}, {drug}, {}});
    asked.emplace_back("NonDefaultStartValuesIterations", true);
    return {
        {"table",
         {{"SurStartup", startup(1)},
          {"SurLifeTableRaw", {{"TypeOfInputData", 2}}},
          {"SurLifeTableTable",
           {{"TypeOfInputData", 2},
            {"Variables", variables({{1}, {2}, {3}})},
            {"CorrectIntervalsContainingNoTerminations", true},
            {"NumberEnteringFirstInterval", 2418}}}},
         "Summary",
         true},
        {"life",
         {{"SurStartup", startup(1)},
          {"SurLifeTableTable", {{"TypeOfInputData", 1}}},
          {"SurLifeTableRaw", joined({{"TypeOfInputData", 1}, {"Variables", variables({{weeks}, {relapse}})}},
                                     joined(codes, {{"UseUserDefinedNumberOfIntervals", true},
                                                    {"NumberOfIntervals", 8},
                                                    {"StepSize", 6.0},
                                                    {"CorrectIntervalsContainingNoTerminations", true}}))},
          {"SurLifeTableResults",
           {{"Distribution", 1},
            {"Weighting", 1},
            {"ProportionsSurviving", "0.5"},
            {"Times", "10"},
            {"ConfidenceLevel", 0.95}}}}},
        {"kaplan",
         {{"SurStartup", startup(2)},
          {"SurKaplanMeier", joined({{"Variables", variables({{weeks}, {relapse}})}}, codes)},
          {"SurKaplanMeierResults", {{"ConfidenceLevel", 0.95}}}}},
        {"two",
         {{"SurStartup", startup(3)},
          {"SurTwoSamples", joined({{"Variables", variables({{weeks}, {relapse}, {arm}})}},
                                   joined(codes, {{"CodeForGroup1", 1}, {"CodeForGroup2", 2}}))}}},
        {"several",
         {{"SurStartup", startup(4)},
          {"SurKSamples", joined({{"Variables", variables({{weeks}, {relapse}, {arm}})}},
                                 joined(codes, {{"Codes", List{1, 2, 3}}}))}}},
        {"cox",
         {{"SurStartup", startup(5)},
          {"SurRegression", regression(1, {{weeks}, {relapse}, {drug}, {}})},
          {"SurRegressionEstimation", estimation},
          {"SurRegressionResults", {{"ConfidenceLevel", 0.95}, {"CovariateValues", List{}}}}}},
        {"strata",
         {{"SurStartup", startup(5)},
          {"SurRegression", regression(1, {{weeks}, {relapse}, {drug}, {sex}})},
          {"SurRegressionEstimation", estimation}}},
        {"parametric",
         {{"SurStartup", startup(5)},
          {"SurRegression", regression(2, {{weeks}, {relapse}, {drug}, {}})},
          {"SurRegressionEstimation", estimation}}},
        {"asked",
         {{"SurStartup", startup(5)}, {"SurRegression", asked}, {"SurRegressionEstimation", estimation}}},
        {"time",
         {{"SurStartup", startup(6)},
          {"SurRegressionTimeDependent", timeDependent},
          {"SurRegressionEstimation", estimation}}},
    };
}

std::vector<PropertyCheck> makePropertyChecks() {
    std::vector<PropertyCheck> all{
        {"SurStartup", "TypeOfAnalysis", "kaplan", 2, 4},

        {"SurLifeTableRaw", "TypeOfInputData", "life", 1, 2},
        {"SurLifeTableRaw", "UseUserDefinedNumberOfIntervals", "life", true, false},
        {"SurLifeTableRaw", "NumberOfIntervals", "life", 8, 12},
        {"SurLifeTableRaw", "UseUserDefinedStepSize", "life", false, true},
        {"SurLifeTableRaw", "StepSize", "life", 6.0, 10.5, {}, {{"UseUserDefinedStepSize", true}}},
        {"SurLifeTableRaw",
         "CorrectIntervalsContainingNoTerminations",
         "life",
         true,
         false,
         {},
         {{"NumberOfIntervals", 30}}},

        {"SurLifeTableTable", "TypeOfInputData", "table", 2, 1},
        {"SurLifeTableTable", "Variables", "table", variables({{1}, {2}, {3}}), variables({{1}, {3}, {2}})},
        {"SurLifeTableTable", "CorrectIntervalsContainingNoTerminations", "table", true, false},
        {"SurLifeTableTable", "NumberEnteringFirstInterval", "table", 2418, 3000},

        {"SurLifeTableResults", "Distribution", "life", 1, 4, "HazardFunction"},
        {"SurLifeTableResults", "Weighting", "life", 1, 3, "PlotOfAllModels"},
        {"SurLifeTableResults", "ProportionsSurviving", "life", "0.5", "0.25, 0.1", "SurvivalTimes"},
        {"SurLifeTableResults", "Times", "life", "10", "5 20", "SurvivalAtTimes"},
        {"SurLifeTableResults", "ConfidenceLevel", "life", 0.95, 0.5, "SurvivalTimes"},

        {"SurKaplanMeierResults", "ConfidenceLevel", "kaplan", 0.95, 0.5, "PercentilesOfSurvivalFunction"},

        {"SurTwoSamples", "CodeForGroup1", "two", 1, 3},
        {"SurTwoSamples", "CodeForGroup2", "two", 2, "C"},

        {"SurKSamples", "Codes", "several", List{1, 2, 3}, List{1, "C"}},

        {"SurRegression", "TypeOfSurvivalRegressionModel", "cox", 1, 3},
        {"SurRegression", "Codes", "strata", List{1, 2}, List{1}},
        {"SurRegression", "EqualCoefficientsDifferentBaselineH0", "strata", true, false,
         "StratitifiedAnalysis"},
        {"SurRegression", "NonDefaultStartValuesIterations", "cox", false, true},
        {"SurRegression",
         "CasewiseDeletionOfMD",
         "cox",
         true,
         false,
         {},
         {{"Variables", variables({{weeks}, {relapse}, {drug, age}, {}})}}},
        {"SurRegression",
         "MeanSubstitutionOfMD",
         "cox",
         false,
         true,
         {},
         {{"Variables", variables({{weeks}, {relapse}, {drug, age}, {}})}}},

        {"SurRegressionTimeDependent", "Codes", "time", List{1, 2}, List{2}},
        {"SurRegressionTimeDependent", "EqualCoefficientsDifferentBaselineH0", "time", true, false,
         "StratitifiedAnalysis"},
        {"SurRegressionTimeDependent", "NonDefaultStartValuesIterations", "time", true, false},
        {"SurRegressionTimeDependent", "CasewiseDeletionOfMD", "time", true, false},
        {"SurRegressionTimeDependent", "MeanSubstitutionOfMD", "time", false, true},
        {"SurRegressionTimeDependent", "TimeDependentCovariateNames", "time", List{"Rx", "Age"},
         List{"Rx", "Decade"}},
        {"SurRegressionTimeDependent", "TimeDependentCovariateExpressions", "time", List{"drug", "age / 10"},
         List{"drug", "drug * (T_ - 10)"}},

        {"SurRegressionEstimation", "MaxNumberOfIterations", "asked", 50, 3},
        {"SurRegressionEstimation", "ConvergenceCriterion", "asked", 0.0001, 0.5},
        {"SurRegressionEstimation", "StartValues", "asked", List{}, List{-0.5}},

        {"SurRegressionResults", "ConfidenceLevel", "cox", 0.95, 0.5},
        {"SurRegressionResults", "CovariateValues", "cox", List{}, List{1.0}, "UserDefinedPlot"},
    };
    const std::pair<std::string_view, std::string_view> specifications[] = {
        {"SurLifeTableRaw", "life"}, {"SurKaplanMeier", "kaplan"}, {"SurTwoSamples", "two"},
        {"SurKSamples", "several"},  {"SurRegression", "cox"},     {"SurRegressionTimeDependent", "time"}};
    for (const auto& [interface, way] : specifications) {
        all.push_back({interface, "CodeForCompleteResponses", way, 1, 7});
        all.push_back({interface, "CodeForCensoredResponses", way, 0, 7});
        for (const Way& one : ways())
            for (const auto& [dialog, settings] : one.dialogs)
                for (const auto& [member, value] : settings)
                    if (one.name == way && dialog == interface && member == "Variables") {
                        List other = std::get<List>(value.value);
                        other[0] = List{days};
                        all.push_back({interface, "Variables", way, value, other});
                    }
    }
    return all;
}

} // namespace

const std::vector<Way>& ways() {
    static const std::vector<Way> all = makeWays();
    return all;
}

const std::vector<PropertyCheck>& propertyChecks() {
    static const std::vector<PropertyCheck> all = makePropertyChecks();
    return all;
}

const std::vector<ActionCheck>& actionChecks() {
    static const std::vector<ActionCheck> all{
        {"SurLifeTableResults", "Summary", "life", "RS"},
        {"SurLifeTableResults", "ParameterEstimates", "life", "S"},
        {"SurLifeTableResults", "HazardFunction", "life", "S"},
        {"SurLifeTableResults", "SurvivalFunction", "life", "S"},
        {"SurLifeTableResults", "ProbabilityDensityFunction", "life", "S"},
        {"SurLifeTableResults", "PlotOfHazardFunction", "life", "C"},
        {"SurLifeTableResults", "PlotOfSurvivalFunction", "life", "C"},
        {"SurLifeTableResults", "PlotOfProbabilityDensityFunction", "life", "C"},
        {"SurLifeTableResults", "RankingOfFits", "life", "S"},
        {"SurLifeTableResults", "PlotOfAllModels", "life", "C"},
        {"SurLifeTableResults", "SurvivalTimes", "life", "S"},
        {"SurLifeTableResults", "SurvivalAtTimes", "life", "S"},

        {"SurKaplanMeierResults", "Summary", "kaplan", "RS"},
        {"SurKaplanMeierResults", "PercentilesOfSurvivalFunction", "kaplan", "S"},
        {"SurKaplanMeierResults", "PlotOfSurvivalTimesVsCumProportionSurviving", "kaplan", "C"},
        {"SurKaplanMeierResults", "PlotOfLogSurvivalTimesVsCumProportionSurviving", "kaplan", "C"},
        {"SurKaplanMeierResults", "PlotOfLogSurvivalTimesVsLogCumProportionSurviving", "kaplan", "C"},
        {"SurKaplanMeierResults", "SurvivalCurve", "kaplan", "C"},

        {"SurTwoSamplesResults", "GehanWilcoxonTest", "two", "RS"},
        {"SurTwoSamplesResults", "CoxFTest", "two", "RS"},
        {"SurTwoSamplesResults", "CoxMantelTest", "two", "RS"},
        {"SurTwoSamplesResults", "LogRankTest", "two", "RS"},
        {"SurTwoSamplesResults", "PetoPetoWilcoxonTest", "two", "RS"},
        {"SurTwoSamplesResults", "ProportionSurvivingByGroup", "two", "RS"},
        {"SurTwoSamplesResults", "PlotOfProportionSurvivingByGroup", "two", "RC"},
        {"SurTwoSamplesResults", "CumulativeProportionSurvivingByGroup", "two", "RC"},
        {"SurTwoSamplesResults", "Summary", "two", "RS"},

        {"SurKSamplesResults", "Summary", "several", "RS"},
        {"SurKSamplesResults", "ScoresByGroup", "several", "S"},
        {"SurKSamplesResults", "DescriptiveStatistics", "several", "S"},
        {"SurKSamplesResults", "HistogramOfSumOfScoresByGroup", "several", "C"},
        {"SurKSamplesResults", "ProportionSurvivingByGroup", "several", "S"},
        {"SurKSamplesResults", "PlotOfProportionSurvivingByGroup", "several", "C"},
        {"SurKSamplesResults", "CumulativeProportionSurvivingByGroup", "several", "SC"},
        {"SurKSamplesResults", "LogRankTests", "several", "S"},
        {"SurKSamplesResults", "PairwiseComparisons", "several", "S"},

        {"SurRegressionEstimation", "ReviewExpressionsForTimeDependentCovariates", "time", "S"},

        {"SurRegressionResults", "Summary", "cox", "RS"},
        {"SurRegressionResults", "ParameterCovariancesCorrelations", "cox", "S"},
        {"SurRegressionResults", "StratitifiedAnalysis", "strata", "S"},
        {"SurRegressionResults", "MeansAndStandardDeviations", "cox", "S"},
        {"SurRegressionResults", "Plot1", "parametric", "C"},
        {"SurRegressionResults", "Plot2", "parametric", "C"},
        {"SurRegressionResults", "UserDefinedPlot", "cox", "SC"},
        {"SurRegressionResults", "Plot3", "parametric", "C"},
        {"SurRegressionResults", "SurvivalTable", "cox", "S"},
        {"SurRegressionResults", "Residuals", "cox", "S"},
        {"SurRegressionResults", "ProportionalHazardsTest", "cox", "S"},
        {"SurRegressionResults", "ScaledSchoenfeldResiduals", "cox", "S"},
        {"SurRegressionResults", "PlotOfScaledSchoenfeldResiduals", "cox", "C"},
        {"SurRegressionResults", "ForestPlot", "cox", "C"},
        {"SurRegressionResults", "ModelComparison", "parametric", "S"},

        // Which make no output: a test of their own has their files.
        {"SurRegressionTimeDependent", "OpenExpressions", "time", ""},
        {"SurRegressionTimeDependent", "SaveExpressions", "time", ""},
    };
    return all;
}

} // namespace walk
