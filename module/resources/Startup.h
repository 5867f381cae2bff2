#pragma once

#include "module/resources/Shared.h"

// The startup dialog, with its page 3060. The text of an entry has the number of its command.

// clang-format off
#define OZM_STARTUP_STRINGS(S) \
    S(StrLifeTables, 101, "Life tables & Distributions") \
    S(StrKaplanMeier, 102, "Kaplan & Meier product-limit method") \
    S(StrTwoSamples, 103, "Comparing two samples") \
    S(StrKSamples, 104, "Comparing multiple samples") \
    S(StrRegression, 105, "Regression models ") \
    S(StrTimeDependent, 204, "Time-dependent covariates") \
    S(StrAnalysisName, 12363, "Survival Analysis") \
    S(StrReportTitle, 20000, "KORVANA: SURVIVAL ANALYSIS")
// clang-format on

namespace ozm::survival {

OZM_STRINGS(startupStrings, OZM_STARTUP_STRINGS);

enum TaskControl : int { TaskList = 180, TaskOpenData = 216, TaskResetSelections = 217 };

inline constexpr ChoiceTemplate taskAnalyses[] = {
    {.text = StrLifeTables, .icon = 89, .command = StrLifeTables, .member = 1},
    {.text = StrKaplanMeier, .icon = 87, .command = StrKaplanMeier, .member = 2},
    {.text = StrTwoSamples, .icon = 109, .command = StrTwoSamples, .member = 3},
    {.text = StrKSamples, .icon = 108, .command = StrKSamples, .member = 4},
    {.text = StrRegression, .icon = 88, .command = StrRegression, .member = 5},
    {.text = 0, .icon = 319, .command = 7424, .member = 0},
    {.text = StrTimeDependent, .icon = 88, .command = StrTimeDependent, .member = 6},
};

inline constexpr ControlTemplate taskControls[] = {
    {.id = TaskList,
     .kind = ControlKind::List,
     .text = "",
     .pages = onFirstPage,
     .choices = taskAnalyses,
     .remembered = true},
    okButton,
    cancelButton,
    {.id = TaskOpenData, .text = "Open &Data"},
    selectCasesButton,
    caseWeightsButton,
    {.id = TaskResetSelections, .text = "&Reset Selections"},
};

inline constexpr DialogTemplate taskTemplate{3059, "Survival and Failure Time Analysis", quickPage,
                                             taskControls};

inline constexpr AutomationMember startupMembers[] = {
    {"TypeOfAnalysis", MemberKind::Property, MemberType::Enumeration, TaskList, "Type of analysis",
     "SurMethod"},
};
inline constexpr AutomationInterface startupInterface{"SurStartup", "CDefineTask",
                                                      "Survival Analysis startup dialog", startupMembers};

} // namespace ozm::survival
