#pragma once

#include "module/resources/Groups.h"
#include "module/resources/Shared.h"

// The comparison of multiple samples.

// clang-format off
#define OZM_K_SAMPLE_STRINGS(S) \
    S(StrKsNoMemory, 20400, "Not enough memory or too many valid cases; close other applications.") \
    S(StrKsTooManyCases, 20401, "Too many datapoints; max is 32767.") \
    S(StrKsTooFewUncensored, 20402, "Not enough valid uncensored cases to perform analysis.") \
    S(StrKsTooFewValid, 20403, "Fewer than two valid cases.") \
    S(StrKsFewerThan3Uncensored, 20404, \
      "Fewer than 3 uncensored cases; cannot reliably estimate parameters ") \
    S(StrKsGroupWithoutUncensored, 20405, \
      "At least one sample (group) has no uncensored cases; cannot perform analysis.") \
    S(StrKsSelectCodes, 20406, "Select grouping codes; for help press F1") \
    S(StrKsTooFewGroups, 20407, "Two groups or more are needed.") \
    S(StrKsTooManyGroups, 20408, "There are more than 250 groups.") \
    S(StrKsCodeTwice, 20409, "A code of the grouping variable was given twice.") \
    S(StrKsCodeGivenTwice, 20410, "The code %1 stands there twice.") \
    S(StrKsChooseFewerCodes, 20411, "Give the codes of the groups to compare, or a variable with fewer.") \
    S(StrKsCapacityOfCopies, 20412, \
      "The copies of weighted cases are counted: select fewer cases, or lower their weights.") \
    S(StrKsWithoutUncensored, 20413, "Without an uncensored case: %1.") \
    S(StrKsCensoredCases, 20414, "%1 (%2 censored)") \
    S(StrKsCapacity, 20415, "Select fewer cases: a sample of them, or fewer groups.") \
    S(StrKsComputing, 20420, "Computing...") \
    S(StrKsTitle, 20421, "Comparing Survival in Several Groups, Results") \
    S(StrKsVariable, 20422, "Variable: ") \
    S(StrKsCensoringVariable, 20423, "Variable with censoring indicator: ") \
    S(StrKsGroupingVariable, 20424, "Grouping variable: ") \
    S(StrKsGroups, 20425, "Groups") \
    S(StrKsValid, 20426, "Total number of valid observations: ") \
    S(StrKsUncensored, 20427, "uncensored: ") \
    S(StrKsCensored, 20428, "censored: ") \
    S(StrKsTestMore, 20429, "Chi-square =               df =      p =          ") \
    S(StrKsTestTwo, 20430, "         Z =                         p =          ") \
    S(StrKsTestMoreShort, 20431, "Chi\u00b2 =              df =      p =          ") \
    S(StrKsTestTwoShort, 20432, "Z =                         p =            ") \
    S(StrKsScores, 20433, "Scores") \
    S(StrKsScoresVariables, 20434, "Variables: ") \
    S(StrKsScoresBy, 20435, "Survival times by ") \
    S(StrKsScoresGroups, 20436, " groups)") \
    S(StrKsScoresCensoring, 20437, "Censoring var.:          (Censored cases are marked with +)") \
    S(StrKsColGroup, 20438, " Group  ") \
    S(StrKsColScore, 20439, " Score  ") \
    S(StrKsColTime1, 20440, "Survival") \
    S(StrKsColTime2, 20441, "Time    ") \
    S(StrKsColMark, 20442, "Censored") \
    S(StrKsSummaryStatistics, 20443, "Summary statistics for each group") \
    S(StrKsColCode1, 20444, "Code for") \
    S(StrKsColSum1, 20445, "Sum of  ") \
    S(StrKsColSum2, 20446, "Scores  ") \
    S(StrKsColUncensored, 20447, "N.uncsrd") \
    S(StrKsColPercent, 20448, "Percent ") \
    S(StrKsColPercentUncensored2, 20449, "uncensrd") \
    S(StrKsColCensored, 20450, "N.censrd") \
    S(StrKsColPercentCensored2, 20451, "censored") \
    S(StrKsColTotal, 20452, "Total N ") \
    S(StrKsDescriptive, 20453, "Descriptive statistics for each group") \
    S(StrKsTotalRow, 20454, "Total   ") \
    S(StrKsColMedian, 20455, " Median ") \
    S(StrKsColMean, 20456, " Mean   ") \
    S(StrKsColDeviation, 20457, "Std.Dv. ") \
    S(StrKsColUncensored2, 20458, "No.uncsd") \
    S(StrKsHistogram, 20459, "Histogram of Sum Scores") \
    S(StrKsHistogramGroup, 20460, "Group    ") \
    S(StrKsAxisScores, 20461, "Sum Scores") \
    S(StrKsAxisObservations, 20462, "Number of observations") \
    S(StrKsCurves, 20463, "Cumulative Proportion Surviving (Kaplan-Meier)") \
    S(StrKsAxisTime, 20464, "Time") \
    S(StrKsAxisSurviving, 20465, "Cumulative Proportion Surviving") \
    S(StrKsLegend, 20466, "@L[3]Complete  @L[2]Censored") \
    S(StrKsLifeTable, 20467, "Life Table for Group ") \
    S(StrKsTest, 20470, "Comparison of Several Groups, Test") \
    S(StrKsColStatistic1, 20471, "  Test  ") \
    S(StrKsColStatistic2, 20472, "Statistic") \
    S(StrKsColDf, 20473, "   df   ") \
    S(StrKsColOneTailed1, 20474, "One-tail") \
    S(StrKsColP, 20475, "   p    ") \
    S(StrKsColExact1, 20476, "p to all") \
    S(StrKsColExact2, 20477, "digits") \
    S(StrKsColDeviationOfSum1, 20478, "Std.Dv. of") \
    S(StrKsColDeviationOfSum2, 20479, "Group 1 Sum") \
    S(StrKsExactInFull, 20480, "p without floors and approximations") \
    S(StrKsNoteFloors, 20481, \
      "Note: p comes from approximations with floors, 0.001 one-tailed and 0.002 two-tailed for Z, 0.00001 for " \
      "chi-square; the p to all digits has neither.") \
    S(StrKsNoteTwoTailed, 20482, "Note: p is two-tailed; the one-tailed one stands beside it.") \
    S(StrKsNoteScores, 20483, \
      "Note: A positive sum of scores means that the group lives longer than the others.") \
    S(StrKsColLabel, 20484, " Label  ") \
    S(StrKsComputingCumulative, 20485, " Computing cumulative survival... ") \
    S(StrKsColSurvival1, 20486, "Cum.Prop") \
    S(StrKsColSurvival2, 20487, "Survivng") \
    S(StrKsSurvivalInFull, 20488, "Cumulative proportion surviving") \
    S(StrKsColError1, 20489, "Standard") \
    S(StrKsColError2, 20490, " Error  ") \
    S(StrKsFewerThan3Values, 20491, " Fewer than 3 valid values. ") \
    S(StrKsLogRankTests, 20500, "Log-Rank, Tarone-Ware and Peto & Peto Tests") \
    S(StrKsLogRank, 20501, "Log-rank") \
    S(StrKsTaroneWare, 20502, "Tarone-Ware") \
    S(StrKsPetoPeto, 20503, "Peto & Peto") \
    S(StrKsColChiSquare, 20504, "Chi-sqr.") \
    S(StrKsChiSquareInFull, 20505, "Chi-square") \
    S(StrKsColTrendOrder, 20506, "Trend by order") \
    S(StrKsColTrendCodes, 20507, "Trend by code") \
    S(StrKsTrendOrderChiSquare, 20508, "Trend over the groups in their order, chi-square") \
    S(StrKsTrendOrderP, 20509, "Trend over the groups in their order, p") \
    S(StrKsTrendCodesChiSquare, 20510, "Trend over the groups' codes, chi-square") \
    S(StrKsTrendCodesP, 20511, "Trend over the groups' codes, p") \
    S(StrKsNoteHypergeometric, 20512, \
      "Note: The covariance is the hypergeometric one. Trend has one degree of freedom.") \
    S(StrKsNoteWeights, 20513, \
      "Note: Failures at a time count 1 (log-rank), the root of the number at risk (Tarone-Ware), the proportion " \
      "surviving of all groups just before it (Peto & Peto).") \
    S(StrKsNoteNotComparable, 20514, \
      "Note: Empty: at no failure are several groups at risk of which some observation lives on.") \
    S(StrKsExpected, 20515, "Observed and Expected Failures, Median Survival Time") \
    S(StrKsColObserved, 20516, "Observed") \
    S(StrKsColExpected, 20517, "Expected") \
    S(StrKsObservedInFull, 20518, "%1: observed failures") \
    S(StrKsExpectedInFull, 20519, "%1: expected failures") \
    S(StrKsColMedian1, 20520, "Median  ") \
    S(StrKsColLower, 20521, "95 % lower") \
    S(StrKsColUpper, 20522, "95 % upper") \
    S(StrKsNoteMedian, 20523, \
      "Note: The median is the first time at which the Kaplan-Meier estimate is 0.5 or less, without interpolation; " \
      "its limits are those of log-minus-log limits of the estimate. Empty: not reached.") \
    S(StrKsNoteWeighted, 20524, \
      "Note: Observed and expected failures of Tarone-Ware and Peto & Peto are sums of weights.") \
    S(StrKsPairs, 20530, "Pairwise Comparisons, Log-Rank Test") \
    S(StrKsColGroup1, 20531, "Group") \
    S(StrKsColGroup2, 20532, "with Group") \
    S(StrKsColHolm1, 20533, "p after ") \
    S(StrKsColHolm2, 20534, "Holm") \
    S(StrKsHolmInFull, 20535, "p adjusted by Holm") \
    S(StrKsNoteHolm, 20536, \
      "Note: The last p is adjusted for %1 comparisons by the step-down method of Holm (1979).")
// clang-format on

namespace ozm::survival {

OZM_STRINGS(kSampleStrings, OZM_K_SAMPLE_STRINGS);

// Specification.

enum KsControl : int { KsCodes = 1006 };

inline constexpr RoleTemplate ksRoles[] = {
    {"Survival (1, 2 or 6):", ListSurvivalTimes, 1, 6, true},
    {"Censoring var:", ListCensoring, 1, 1},
    {"Grouping variable:", ListGrouping, 1, 1},
};

inline constexpr ControlTemplate ksControls[] = {
    {.id = SpecifyVariables, .kind = ControlKind::VariableSelection, .text = "&Variables", .roles = ksRoles},
    completeCodeField,
    censoredCodeField,
    {.id = KsCodes,
     .kind = ControlKind::CodeList,
     .text = "Codes of the &groups (none: all):",
     .codesOfRole = RoleGrouping,
     .hint = StrKsSelectCodes},
    okButton,
    cancelButton,
    selectCasesButton,
    caseWeightsButton,
};

inline constexpr DialogTemplate ksTemplate{3042, "Comparing Survival in Multiple Groups", quickPage,
                                           ksControls};

inline constexpr AutomationMember ksMembers[] = {
    variablesMember,
    completeCodeMember,
    censoredCodeMember,
    CodesMember(KsCodes),
};
inline constexpr AutomationInterface ksInterface{"SurKSamples", "CDefineKSDlg",
                                                 "Survival Analysis k-samples comparison dialog", ksMembers};

// Results.

enum KsResultsControl : int {
    KsSummaryBox = 1140,
    KsSummary = 1141,
    KsScores = 1142,
    KsDescriptive = 1143,
    KsHistogram = 1144,
    KsLifeTables = 1145,
    KsPlotSurviving = 1146,
    KsCurves = 1147,
    KsLogRankTests = 1148,
    KsPairs = 1149,
};

inline constexpr ControlTemplate ksResultsControls[] = {
    {.id = KsSummaryBox, .kind = ControlKind::Summary, .text = ""},
    {.id = KsSummary, .text = "!249S&ummary", .pages = onFirstPage},
    {.id = KsScores, .text = "!249Scores for &each group", .pages = onFirstPage},
    {.id = KsDescriptive, .text = "!249&Descriptive statistics", .pages = onFirstPage},
    {.id = KsHistogram, .text = "!228&Histogram of sum of scores by group", .pages = onFirstPage},
    {.id = KsCurves,
     .text = "!228&Cumulative proportion surviving by group (Kaplan-Meier)",
     .pages = onSecondPage},
    {.id = KsLifeTables, .text = "!249Life tables: p&roportion surviving by group", .pages = onSecondPage},
    {.id = KsPlotSurviving, .text = "!228Plot of proportion &surviving by group", .pages = onSecondPage},
    {.id = KsLogRankTests,
     .text = "!249&Log-rank, Tarone-Ware and Peto && Peto tests, trend, medians",
     .pages = onThirdPage},
    {.id = KsPairs, .text = "!249&Pairwise comparisons (log-rank)", .pages = onThirdPage},
    cancelButton,
};

inline constexpr std::string_view ksResultsPages[] = {"Quick", "Survival by group", "Further tests"};
inline constexpr DialogTemplate ksResultsTemplate{3044, "Comparing Survival in Multiple Groups, Results",
                                                  ksResultsPages, ksResultsControls};

inline constexpr AutomationMember ksResultsMembers[] = {
    OutputMember("Summary", KsSummary, "Summary, Chi-square, survival times, etc."),
    OutputMember("ScoresByGroup", KsScores, "Scores for each group"),
    OutputMember("DescriptiveStatistics", KsDescriptive, "Descriptive statistics"),
    OutputMember("HistogramOfSumOfScoresByGroup", KsHistogram, "Histogram of sum of scores by group"),
    OutputMember("ProportionSurvivingByGroup", KsLifeTables, "Proportion surviving by group"),
    OutputMember("PlotOfProportionSurvivingByGroup", KsPlotSurviving,
                 "Plot of proportion surviving by group"),
    OutputMember("CumulativeProportionSurvivingByGroup", KsCurves,
                 "Cumulative proportion surviving by group"),
    Added(OutputMember("LogRankTests", KsLogRankTests,
                       "Log-rank, Tarone-Ware and Peto & Peto tests, tests for trend, medians by group")),
    Added(OutputMember("PairwiseComparisons", KsPairs, "Pairwise comparisons by the log-rank test")),
};
inline constexpr AutomationInterface ksResultsInterface{
    "SurKSamplesResults", "CKsResultsDlg", "Survival Analysis k-samples comparison results dialog",
    ksResultsMembers};

} // namespace ozm::survival
