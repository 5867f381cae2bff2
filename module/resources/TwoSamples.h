#pragma once

#include "module/resources/Groups.h"
#include "module/resources/Shared.h"

// The comparison of two samples.

// clang-format off
#define OZM_TWO_SAMPLE_STRINGS(S) \
    S(StrIdenticalGroupCodes, 12336, \
      "Codes for first and second group are identical. Select two different codes.") \
    S(StrTwoNoMemory, 14241, "Not enough memory or too many valid cases; close other applications.") \
    S(StrTwoTooManyCases, 14243, \
      "Too many datapoints; choose the 'Comparing multiple samples' option from the SURVIVAL ANALYSIS " \
      "opening menu.") \
    S(StrTwoTooFewUncensored, 14244, "Not enough valid uncensored cases to perform analysis.") \
    S(StrTwoTooFewValid, 14245, "Fewer than two valid cases.") \
    S(StrTwoEmptyGroup, 14632, "Fewer than 2 uncensored cases; cannot perform analysis.          ") \
    S(StrTwoTitle, 20301, "Two-Sample Tests") \
    S(StrTwoVariable, 20302, "Variable: ") \
    S(StrTwoCensoringVariable, 20303, "Variable with censoring indicator: ") \
    S(StrTwoGroupingVariable, 20304, "Grouping variable: ") \
    S(StrTwoValid, 20305, "Total number of valid observations: ") \
    S(StrTwoUncensored, 20306, "uncensored: ") \
    S(StrTwoCensored, 20307, "censored: ") \
    S(StrTwoBoxHeading, 20308, "Valid observations:  Group 1                    Group 2") \
    S(StrTwoBoxUncensored, 20309, "Uncensored:        (   .  %)                  (   .  %)") \
    S(StrTwoBoxCensored, 20310, "Censored:        (   .  %)                  (   .  %)") \
    S(StrTwoGroup1, 20311, "Group 1:") \
    S(StrTwoGroup2, 20312, "Group 2:") \
    S(StrTwoGroupValid, 20313, "Valid observations:") \
    S(StrTwoGroupUncensored, 20314, "Uncensored:        (      %)                (      %)") \
    S(StrTwoGroupCensored, 20315, "Censored:        (      %)                (      %)") \
    S(StrTwoLifeTable, 20316, "Life Table for Group 1 and Group 2") \
    S(StrTwoLifeTableCodes, 20317, "Group 1: Code         Group 2: Code      ") \
    S(StrTwoNotComputed, 20318, " This test cannot be computed. ") \
    S(StrTwoGehan, 20320, "Gehan's Wilcoxon Test") \
    S(StrTwoCoxF, 20321, "Cox's F-Test") \
    S(StrTwoCoxMantel, 20322, "Cox-Mantel Test") \
    S(StrTwoLogRank, 20323, "Log-Rank Test") \
    S(StrTwoPetoPeto, 20324, "Peto & Peto's Wilcoxon Test") \
    S(StrTwoStatistics, 20325, ", Statistics") \
    S(StrTwoScores, 20326, ", Scores") \
    S(StrTwoFailures, 20327, ", Failure Times") \
    S(StrTwoSummary, 20328, "Summary of the Two-Sample Tests") \
    S(StrTwoColTime1, 20330, "Survival") \
    S(StrTwoColTime2, 20331, "  Time  ") \
    S(StrTwoColStatus, 20332, " Status ") \
    S(StrTwoColGroup, 20333, " Group  ") \
    S(StrTwoColR1, 20334, "   R1   ") \
    S(StrTwoColR2, 20335, "   R2   ") \
    S(StrTwoColScore, 20336, " Score  ") \
    S(StrTwoColAtRisk, 20337, "At Risk ") \
    S(StrTwoColFailures, 20338, "Failures") \
    S(StrTwoColHazard, 20339, " Hazard ") \
    S(StrTwoColCumulative1, 20340, "Cum.Prop") \
    S(StrTwoColCumulative2, 20341, "Survivng") \
    S(StrTwoColAtRisk2, 20342, "Group 2 ") \
    S(StrTwoColShare, 20343, " Share  ") \
    S(StrTwoColScoreSum1, 20344, "Sum of  ") \
    S(StrTwoColScoreSum2, 20345, "Scores  ") \
    S(StrTwoColSquares2, 20346, "Squares ") \
    S(StrTwoColVariance, 20347, "Variance") \
    S(StrTwoColStatistic1, 20348, "  Test  ") \
    S(StrTwoColStatistic2, 20349, "Statistic") \
    S(StrTwoColUncorrected1, 20350, "Without ") \
    S(StrTwoColUncorrected2, 20351, "Correction") \
    S(StrTwoColP, 20352, "   p    ") \
    S(StrTwoColT1, 20353, "   T1   ") \
    S(StrTwoColT2, 20354, "   T2   ") \
    S(StrTwoColF, 20355, "   F    ") \
    S(StrTwoColDf1, 20356, "  df 1  ") \
    S(StrTwoColDf2, 20357, "  df 2  ") \
    S(StrTwoColU, 20358, "   U    ") \
    S(StrTwoColI, 20359, "   I    ") \
    S(StrTwoColC, 20360, "   C    ") \
    S(StrTwoColForm, 20361, " Form   ") \
    S(StrTwoSurvivalInFull, 20362, "Cumulative proportion surviving") \
    S(StrTwoUncorrectedZ, 20363, "z without correction") \
    S(StrTwoPermutational, 20370, "permutational") \
    S(StrTwoHypergeometric, 20371, "hypergeometric") \
    S(StrTwoNotePermutational, 20372, \
      "Note: The variance is the permutational one (other programs may use the hypergeometric one).") \
    S(StrTwoNoteHypergeometric, 20373, \
      "Note: The variance is the hypergeometric one (other programs may use a permutational one).") \
    S(StrTwoNoteCoxF, 20374, \
      "Note: No variance is used, neither permutational nor hypergeometric. F has the group with the " \
      "greater mean score first; its p is one-sided.") \
    S(StrTwoNoteCorrection, 20375, "Note: The test statistic has a continuity correction of ") \
    S(StrTwoNoteGehanInstead, 20376, \
      "Note: No observation is censored: Peto & Peto's test is computed as Gehan's, and has its sign.") \
    S(StrTwoNoteStatus, 20377, "Status: 1 uncensored, 0 censored") \
    S(StrTwoNoteSigns, 20378, \
      "Signs when group 1 lives longer: Gehan and Cox-Mantel positive, log-rank and Peto & Peto " \
      "negative.") \
    S(StrTwoNoteSums, 20379, \
      "Gehan, log-rank and Peto & Peto add up the scores of group 1; Cox-Mantel the failures of group " \
      "2 beyond those expected.") \
    S(StrTwoNoteCoxFOrder, 20380, \
      "Cox's F has no sign: df 1 is twice the uncensored observations of the group that lives longer. " \
      "Where df 1 = df 2, it is the group with the greater of T1 and T2.") \
    S(StrTwoNoteOneSided, 20381, "The p of Cox's F is one-sided, the others are two-sided.") \
    S(StrTwoUncensoredFull, 20388, "Group %1 has more than %2 uncensored observations.") \
    S(StrTwoCensoredFull, 20389, "Group %1 has more than %2 censored observations.") \
    S(StrTwoGroupCounts, 20390, "%1 uncensored, %2 censored.") \
    S(StrTwoCapacity, 20391, \
      "This analysis takes at most %1 uncensored and %1 censored observations of each group, copies " \
      "of weighted cases counted: select fewer cases, or compare them as multiple samples, of " \
      "which there may be 32767 cases.") \
    S(StrTwoNeeded, 20392, \
      "Two uncensored observations in all are needed, and an observation in each group.")
// clang-format on

namespace ozm::survival {

OZM_STRINGS(twoSampleStrings, OZM_TWO_SAMPLE_STRINGS);

// Specification.

enum TwoControl : int { TwoGroup1Code = 1004, TwoGroup2Code = 1005 };

inline constexpr RoleTemplate twoRoles[] = {timesRole, censoringRole, groupingRole};

inline constexpr ControlTemplate twoControls[] = {
    {.id = SpecifyVariables, .kind = ControlKind::VariableSelection, .text = "&Variables", .roles = twoRoles},
    completeCodeField,
    censoredCodeField,
    {.id = TwoGroup1Code,
     .kind = ControlKind::CodeField,
     .text = "Code for group &1:",
     .codesOfRole = RoleGrouping},
    {.id = TwoGroup2Code,
     .kind = ControlKind::CodeField,
     .text = "Code for group &2:",
     .codesOfRole = RoleGrouping},
    okButton,
    cancelButton,
    selectCasesButton,
    caseWeightsButton,
};

inline constexpr DialogTemplate twoTemplate{3036, "Comparing Survival in Two Groups", quickPage, twoControls};

inline constexpr AutomationMember twoMembers[] = {
    variablesMember,
    completeCodeMember,
    censoredCodeMember,
    {"CodeForGroup1", MemberKind::Property, MemberType::Code, TwoGroup1Code, "Code identifying group 1"},
    {"CodeForGroup2", MemberKind::Property, MemberType::Code, TwoGroup2Code, "Code identifying group 2"},
};
inline constexpr AutomationInterface twoInterface{
    "SurTwoSamples", "CDefineTwoDlg", "Survival Analysis two-sample comparisons dialog", twoMembers};

// Results.

enum TwoResultsControl : int {
    TwoSummaryBox = 1120,
    TwoSummary = 1121,
    TwoGehan = 1122,
    TwoCoxF = 1123,
    TwoCoxMantel = 1124,
    TwoLogRank = 1125,
    TwoPetoPeto = 1126,
    TwoLifeTables = 1127,
    TwoPlotSurviving = 1128,
    TwoPlotCumulative = 1129,
};

inline constexpr ControlTemplate twoResultsControls[] = {
    {.id = TwoSummaryBox, .kind = ControlKind::Summary, .text = ""},
    {.id = TwoSummary, .text = "!249S&ummary:  The five tests side by side", .pages = onFirstPage},
    {.id = TwoGehan, .text = "!249&Gehan-Wilcoxon test", .pages = onFirstPage},
    {.id = TwoCoxF, .text = "!249Cox &F test", .pages = onFirstPage},
    {.id = TwoCoxMantel, .text = "!249Cox-&Mantel test", .pages = onFirstPage},
    {.id = TwoLogRank, .text = "!249&Log-rank test", .pages = onFirstPage},
    {.id = TwoPetoPeto, .text = "!249&Peto and Peto's Wilcoxon test", .pages = onFirstPage},
    {.id = TwoLifeTables, .text = "!249Life table: p&roportion surviving by group", .pages = onSecondPage},
    {.id = TwoPlotSurviving, .text = "!228Plot of proportion &surviving by group", .pages = onSecondPage},
    {.id = TwoPlotCumulative,
     .text = "!228Plot of &cumulative proportion surviving by group",
     .pages = onSecondPage},
    cancelButton,
};

inline constexpr std::string_view twoResultsPages[] = {"Quick", "Survival by group"};
inline constexpr DialogTemplate twoResultsTemplate{3038, "Two-Sample Tests Results", twoResultsPages,
                                                   twoResultsControls};

inline constexpr AutomationMember twoResultsMembers[] = {
    OutputMember("GehanWilcoxonTest", TwoGehan, "Gehan-Wilcoxon test"),
    OutputMember("CoxFTest", TwoCoxF, "Cox F test"),
    OutputMember("CoxMantelTest", TwoCoxMantel, "Cox-Mantel test"),
    OutputMember("LogRankTest", TwoLogRank, "Log-rank test"),
    OutputMember("PetoPetoWilcoxonTest", TwoPetoPeto, "Peto and Peto's Wilcoxon test"),
    OutputMember("ProportionSurvivingByGroup", TwoLifeTables, "Proportion surviving by group"),
    OutputMember("PlotOfProportionSurvivingByGroup", TwoPlotSurviving,
                 "Plot of proportion surviving by group"),
    OutputMember("CumulativeProportionSurvivingByGroup", TwoPlotCumulative,
                 "Cumulative proportion surviving by group"),
    Added(OutputMember("Summary", TwoSummary, "Summary, the five tests side by side")),
};
inline constexpr AutomationInterface twoResultsInterface{
    "SurTwoSamplesResults", "CTwoResultsDlg", "Survival Analysis two-sample comparisons results dialog",
    twoResultsMembers};

} // namespace ozm::survival
