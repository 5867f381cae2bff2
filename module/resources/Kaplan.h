#pragma once

#include "module/resources/Shared.h"

// The Kaplan-Meier analysis.

// clang-format off
#define OZM_KAPLAN_STRINGS(S) \
    S(StrKaplanNoMemory, 14147, "Not enough memory or too many valid cases; close other applications.") \
    S(StrComputingProductLimit, 14149, " Computing product-limit survival analysis... ") \
    S(StrTooFewUncensored, 14151, "Not enough valid uncensored cases to perform analysis.") \
    S(StrTooFewValid, 14152, "Fewer than two valid cases.") \
    S(StrNoUncensored, 14629, "There are no uncensored cases; cannot estimate parameters.  ") \
    S(StrTooManyCasesKaplan, 14661, \
      "Too many valid datapoints (max=1000000; contact Korvana technical support for availability of " \
      "larger versions).") \
    S(StrKmResultsTitle, 20200, "Product-Limit (Kaplan-Meier) Analysis Results") \
    S(StrKmVariable, 20201, "Variable:    ") \
    S(StrKmCensoringVariable, 20203, "Variable with censoring indicator:    ") \
    S(StrKmValid, 20204, "Total number of valid observations:   ") \
    S(StrKmUncensored, 20205, "uncensored:    ") \
    S(StrKmCensored, 20206, "censored:      ") \
    S(StrKmTableTitle, 20210, "Kaplan-Meier (Product-limit) analysis") \
    S(StrKmCensoredNote, 20211, "Note: Censored cases are marked with +") \
    S(StrKmCases, 20212, "Cases       to     ") \
    S(StrKmColTime, 20213, " Time   ") \
    S(StrKmColCumulative1, 20214, "Cumulatv") \
    S(StrKmColCumulative2, 20215, "Survival") \
    S(StrKmColError1, 20216, "Standard") \
    S(StrKmColError2, 20217, " Error  ") \
    S(StrKmColCase1, 20218, "Case    ") \
    S(StrKmColNumber, 20219, "Number  ") \
    S(StrKmColName, 20220, "Name    ") \
    S(StrKmColMark, 20221, "Censored") \
    S(StrKmColCount, 20222, "Number") \
    S(StrKmNoteTimeZero, 20223, "Uncensored observations left out, as time 0 has no logarithm: %1.") \
    S(StrKmNoteSurvivalZero, 20224, \
      "Uncensored observations left out, as survival 0 has no logarithm: %1.") \
    S(StrKmSurvivalInFull, 20225, "Cumulative Survival") \
    S(StrKmLevelGiven, 20226, "The level given was %1.") \
    S(StrKmPercentiles1, 20230, "Percentiles of     ") \
    S(StrKmPercentiles2, 20231, "the Survival Function") \
    S(StrKmLowerQuartile, 20232, "25'th percentile (lower quartile)") \
    S(StrKmMedian, 20233, "50'th percentile (median) ") \
    S(StrKmUpperQuartile, 20234, "75'th percentile (upper quartile)") \
    S(StrKmColSurvival, 20235, "Survival") \
    S(StrKmColSurvivalTime, 20236, " Time   ") \
    S(StrKmColPercentile, 20237, "Percentl") \
    S(StrKmLevelLower, 20238, "% lower") \
    S(StrKmLevelUpper, 20239, "% upper") \
    S(StrKmPlot1, 20240, "Survival Function    ") \
    S(StrKmPlot2, 20241, "Log Survival Times vs. Cumulative Proportion Surviving") \
    S(StrKmPlot3, 20242, "Log Survival Times vs. Log Cumulative Prop. Surviving") \
    S(StrKmAxisTime, 20243, "Survival Time") \
    S(StrKmAxisLogTime, 20244, "Log Survival Time") \
    S(StrKmAxisSurviving, 20245, "Cumulative Proportion Surviving") \
    S(StrKmAxisLogSurviving, 20246, "Log Cumulative Proportion Surviving") \
    S(StrKmLegendEstimate, 20247, "Kaplan-Meier estimate") \
    S(StrKmLegendCensored, 20248, "Censored") \
    S(StrKmLegendObserved, 20249, "Uncensored") \
    S(StrOnly32000Plotted, 20250, "Only the first 32000 cases will be plotted.") \
    S(StrInvalidLevel, 20253, \
      "Invalid confidence interval (CI) was specified (Correct range is 0<CI<1);reset to default 0.95") \
    S(StrKmCurve, 20254, "Survival Curve") \
    S(StrKmNoteOnlyFirst, 20255, \
      "Only the first %1 of %2 observations in order of time are drawn; the survival curve draws all.") \
    S(StrKmNoteThinned, 20256, \
      "All %1 observations are drawn, those that a page cannot tell apart as one.") \
    S(StrKmPlotsHint, 20257, \
      "Plots 1 to 3 draw the first %1 observations, the survival curve all of them.") \
    S(StrKmCapacity, 20258, \
      "This run has room for %1 valid observations, copies of weighted cases counted: select fewer " \
      "cases or use smaller weights.") \
    S(StrKmMemory, 20259, \
      "The run asked for room for %1 observations, %2 MB; with case weights it always asks for %3.")
// clang-format on

namespace ozm::survival {

OZM_STRINGS(kaplanStrings, OZM_KAPLAN_STRINGS);

// Specification.

inline constexpr RoleTemplate kaplanRoles[] = {timesRole, censoringRole};

inline constexpr ControlTemplate kaplanControls[] = {
    {.id = SpecifyVariables,
     .kind = ControlKind::VariableSelection,
     .text = "&Variables",
     .roles = kaplanRoles},
    completeCodeField,
    censoredCodeField,
    okButton,
    cancelButton,
    selectCasesButton,
    caseWeightsButton,
};

inline constexpr DialogTemplate kaplanTemplate{3030, "Product-Limit (Kaplan & Meier) Analysis", quickPage,
                                               kaplanControls};

inline constexpr AutomationMember kaplanMembers[] = {variablesMember, completeCodeMember, censoredCodeMember};
inline constexpr AutomationInterface kaplanInterface{"SurKaplanMeier", "CDefineKaplanDlg",
                                                     "Survival Analysis Kaplan-Meier dialog", kaplanMembers};

// Results.

enum KaplanResultsControl : int {
    KaplanSummaryBox = 1100,
    KaplanSummary = 1101,
    KaplanPercentiles = 1102,
    KaplanPlot1 = 1103,
    KaplanPlot2 = 1104,
    KaplanPlot3 = 1105,
    KaplanLevel = 1106,
    KaplanCurve = 1107,
    KaplanPlot1Again = 1113, ///< the same output on the plots' tab
};

inline constexpr double kaplanDefaultLevel = 0.95; ///< of confidence

inline constexpr std::uint8_t onQuickAndAdvanced[] = {0, 1};
inline constexpr std::uint8_t onQuickAndPlots[] = {0, 2};

inline constexpr ControlTemplate kaplanResultsControls[] = {
    {.id = KaplanSummaryBox, .kind = ControlKind::Summary, .text = ""},
    {.id = KaplanSummary,
     .text = "!249S&ummary:  Product-limit survival analysis",
     .pages = onQuickAndAdvanced},
    {.id = KaplanCurve, .text = "!228Survival cur&ve of all observations", .pages = onQuickAndPlots},
    {.id = KaplanPlot1, .text = "!228Survival &times vs. cum. proportion surviving", .pages = onFirstPage},
    {.id = KaplanLevel,
     .kind = ControlKind::Real,
     .text = "&Conf. Level:",
     .pages = onFirstPage,
     .decimals = 6,
     .isShare = true,
     .range = {.least = 0,
               .greatest = 1,
               .message = StrInvalidLevel,
               .detail = StrKmLevelGiven,
               .resetTo = kaplanDefaultLevel},
     .remembered = true},
    {.id = KaplanPercentiles, .text = "ePercentiles of &survival function", .pages = onSecondPage},
    {.id = KaplanPlot1Again, .text = "Plot &1", .pages = onThirdPage, .repeats = KaplanPlot1},
    {.id = KaplanPlot2, .text = "Plot &2", .pages = onThirdPage},
    {.id = KaplanPlot3, .text = "Plot &3", .pages = onThirdPage},
    cancelButton,
};

inline constexpr std::string_view kaplanResultsPages[] = {"Quick", "Advanced", "Function plots"};
inline constexpr DialogTemplate kaplanResultsTemplate{3032, "Product-Limit (Kaplan-Meier) Analysis Results",
                                                      kaplanResultsPages, kaplanResultsControls};

inline constexpr AutomationMember kaplanResultsMembers[] = {
    OutputMember("Summary", KaplanSummary, "Summary, Kaplan-Meier product limit estimates"),
    OutputMember("PercentilesOfSurvivalFunction", KaplanPercentiles, "Percentiles of survival function"),
    OutputMember("PlotOfSurvivalTimesVsCumProportionSurviving", KaplanPlot1,
                 "Plot of survival times vs. cumulative proportion surviving"),
    OutputMember("PlotOfLogSurvivalTimesVsCumProportionSurviving", KaplanPlot2,
                 "Plot of log survival times vs. cumulative proportion surviving"),
    OutputMember("PlotOfLogSurvivalTimesVsLogCumProportionSurviving", KaplanPlot3,
                 "Plot of log-survival times vs. log-cumulative proportion surviving"),
    Added({"ConfidenceLevel", MemberKind::Property, MemberType::Real, KaplanLevel,
           "Confidence level of the limits, between 0 and 1"}),
    Added(OutputMember("SurvivalCurve", KaplanCurve, "Survival curve of all observations")),
    Added({"DefaultPlot", MemberKind::Property, MemberType::Text, 0,
           "The action that plots survival best for these data (read only)"}),
};
inline constexpr AutomationInterface kaplanResultsInterface{"SurKaplanMeierResults", "CKaplanResultsDlg",
                                                            "Survival Analysis Kaplan-Meier results dialog",
                                                            kaplanResultsMembers};

} // namespace ozm::survival
