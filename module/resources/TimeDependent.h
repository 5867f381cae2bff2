#pragma once

#include "module/resources/Regression.h"

// The proportional hazards model with covariates that expressions define: specification.

// clang-format off
#define OZM_TIME_DEPENDENT_STRINGS(S) \
    S(StrTimeTooLong, 21500, \
      "At least one expression is too long and was truncated (to 60 characters); some information in the expressions " \
      "might be lost.") \
    S(StrTimeTooMany, 21501, \
      "Too many expressions, only the first 40 expressions (covariates) will be processed.") \
    S(StrTimeTooManyVariables, 21502, "Too many variables on the right side of expression(s).") \
    S(StrTimeDeleteWhat, 21503, \
      "To delete an expression, first highlight it by clicking on it, then click on the Delete button.") \
    S(StrTimeNothingToDelete, 21504, "Nothing to delete.") \
    S(StrTimeNoCovariates, 21505, \
      "No covariates have been specified yet; specify expressions to define regular and time-dependent covariates; press " \
      "F1 or click on the ? for more information") \
    S(StrTimeNothingToSave, 21506, \
      "Nothing to save; first enter expressions to define (time-dependent) covariates.") \
    S(StrTimeNoExpressions, 21507, \
      "Invalid file type, or the file is empty (contains no expressions)") \
    S(StrTimeOverwrite, 21508, \
      "Some labels (covariates) are repeated; do you want to overwrite them? (No-Append)") \
    S(StrTimeSaveTitle, 21509, "Save As File") \
    S(StrTimeOpenTitle, 21510, "Open File") \
    S(StrTimeTableTitle, 21511, "Cox Proportional Hazard Model ") \
    S(StrTimeTableTitle2, 21512, "with Time-Dependent Covariates") \
    S(StrTimeColName, 21513, " Name  ") \
    S(StrTimeColExpression, 21514, "Expression defining the covariate") \
    S(StrTimeSelectTitle, 21515, "Select/specify covariates (expressions)") \
    S(StrTimeNotAllTaken, 21516, "Not all that the file has could be taken as it stands.") \
    S(StrTimeNamesCut, 21517, "Names that were cut to 8 characters: %1.") \
    S(StrTimeLeftOut, 21518, \
      "Left out, as it has no expression, or no name, or one that cannot be, or one that came before: %1.") \
    S(StrTimeGiven, 21519, "Covariates that are given: %1; there is room for 40.") \
    S(StrTimeNotWritten, 21520, "The expressions could not be written.") \
    S(StrTimeFault, 21521, "An expression cannot be understood.") \
    S(StrTimeFaultDetail, 21522, "%1 = %2\n%3") \
    S(StrTimeNoName, 21523, "Give the covariate a name.") \
    S(StrTimeNoExpression, 21524, "Enter the expression that defines the covariate %1.") \
    S(StrTimeTwice, 21525, "Two covariates have the name %1: they must be told apart.") \
    S(StrTimeBadName, 21526, "The name %1 of a covariate cannot hold \"=\", nor begin with \"[\", \";\" or \"#\".") \
    S(StrTimeLongName, 21527, "The name %1 of a covariate has %2 characters; there is room for 8.") \
    S(StrTimeLongExpression, 21528, "The expression of %1 has %2 characters; there is room for 60.") \
    S(StrTimeCounts, 21529, "Names of covariates: %1; expressions: %2.") \
    S(StrTimeFailed, 21530, "%1 cannot be computed for case %2 at time %3.") \
    S(StrTimeHint, 21531, "Over the variables of the data and T_, the time, such as age * log(T_)") \
    S(StrTimeBadCovariate, 21532, "The covariate cannot be used.") \
    S(StrTimeOut, 21533, "Proportional Hazards (Cox) Regression Results, Time-Dependent Covariates") \
    S(StrTimeDefined, 21534, "    %1 = %2") \
    S(StrTimeMeansNote, 21535, "The values are those of each case at its own survival time.") \
    S(StrTimeKept, 21536, "Computing (values of the expressions are kept: %1 MB) ... ") \
    S(StrTimeKeptInPart, 21537, \
      "Computing (%1 of %2 MB of the values of the expressions are kept, the others evaluated each time) ... ") \
    S(StrTimeNotKept, 21538, "Computing (the expressions are evaluated each time) ... ") \
    S(StrTimeEvaluation, 21539, "Iteration %1") \
    S(StrTimeReplaceWhat, 21546, \
      "To replace an expression, first highlight it by clicking on it, or enter its name; then click on the Replace " \
      "button.") \
    S(StrTimeTime, 21547, "T_") \
    S(StrTimeBeyond, 21548, \
      "Coefficients times covariates come to more than 75 for case %2 at time %3, mostly by %1, for which there is no " \
      "likelihood. Where the values of %1 are far from 0, subtract a constant near them, as in year - 1995.") \
    S(StrTimeUnits, 21549, \
      "The values of %1 are of magnitude %2: express it in other units, so that they come nearer to 1.") \
    S(StrTimeFewer, 21550, "Expressions that the file says it has: %1; there are %2.") \
    S(StrTimeNotUtf8, 21551, "The name %1 of a covariate is not in UTF-8.")
// clang-format on

namespace ozm::survival {

OZM_STRINGS(timeDependentStrings, OZM_TIME_DEPENDENT_STRINGS);

/// Place of the stratification variable among the boxes.
inline constexpr int RoleStrataOfTimeDependent = 2;

enum TimeDependentControl : int {
    TimeTable = 1040,
    TimeName = 1041,
    TimeExpression = 1042,
    TimeAdd = 1043,
    TimeReplace = 1044,
    TimeDelete = 1045,
    TimeOpen = 1046,
    TimeSave = 1047,
    TimeNames = 1048,
    TimeExpressions = 1049,
};

inline constexpr RoleTemplate timeDependentRoles[] = {
    {"Survival times (1), dates (2 or 6):", ListSurvivalTimes, 1, 6, true},
    censoringRole,
    {"Stratification variable (optional):", ListStrata, 0, 1},
};
inline constexpr int timeColumns[] = {StrTimeColName, StrTimeColExpression};

inline constexpr ChoiceTemplate timeNames[] = {{StrTimeTime}};

inline constexpr ControlTemplate timeDependentControls[] = {
    {.id = SpecifyVariables,
     .kind = ControlKind::VariableSelection,
     .text = "&Variables",
     .roles = timeDependentRoles},
    completeCodeField,
    censoredCodeField,
    {.id = TimeTable,
     .kind = ControlKind::List,
     .text = "Select/specify covariates (expressions)",
     .columns = timeColumns,
     .onDelete = TimeDelete},
    {.id = TimeName, .kind = ControlKind::Text, .text = "&Name:", .most = 8, .onEnter = TimeAdd},
    {.id = TimeExpression,
     .kind = ControlKind::Text,
     .text = "&Expression:",
     .choices = timeNames,
     .hint = StrTimeHint,
     .most = 60,
     .onEnter = TimeAdd,
     .isExpression = true},
    {.id = TimeAdd, .text = "&Add", .beside = TimeTable},
    {.id = TimeReplace, .text = "&Replace", .beside = TimeTable},
    {.id = TimeDelete, .text = "De&lete", .beside = TimeTable},
    {.id = TimeOpen, .text = "O&pen File...", .beside = TimeTable},
    {.id = TimeSave, .text = "Save As &File...", .beside = TimeTable},
    {.id = TimeNames, .kind = ControlKind::TextList, .text = "Names of the covariates", .hidden = true},
    {.id = TimeExpressions,
     .kind = ControlKind::TextList,
     .text = "Expressions of the covariates",
     .hidden = true},
    {.id = RegStrataCodes,
     .kind = ControlKind::CodeList,
     .text = "Codes of the s&trata (none: all):",
     .codesOfRole = RoleStrataOfTimeDependent,
     .hint = StrRegStrataHint},
    {.id = RegDifferentBaselines,
     .kind = ControlKind::CheckBox,
     .text = "E&qual coefficients, different baseline h0 (in stratified analysis)",
     .hint = StrRegBaselinesHint},
    {.id = RegNonDefault,
     .kind = ControlKind::CheckBox,
     .text = "Non-default no. iterations, start values, etc."},
    {.id = RegMissing,
     .kind = ControlKind::RadioGroup,
     .text = "Missing values of variables",
     .choices = regressionMissing},
    okButton,
    cancelButton,
    selectCasesButton,
    caseWeightsButton,
};
inline constexpr DialogTemplate timeDependentTemplate{
    3061, "Proportional Hazard Model with Time-Dependent Covariates", quickPage, timeDependentControls};

inline constexpr AutomationMember timeDependentMembers[] = {
    variablesMember,
    completeCodeMember,
    censoredCodeMember,
    regressionMembers[4],
    regressionMembers[5],
    regressionMembers[6],
    regressionMembers[7],
    regressionMembers[8],
    {"TimeDependentCovariateNames", MemberKind::Property, MemberType::Texts, TimeNames,
     "Names of time dependent covariates"},
    {"TimeDependentCovariateExpressions", MemberKind::Property, MemberType::Texts, TimeExpressions,
     "Expression for time dependent covariates"},
    OutputMember("OpenExpressions", TimeOpen, "Open expressions for time dependent covariates"),
    OutputMember("SaveExpressions", TimeSave, "Save expressions for time dependent covariates"),
};
inline constexpr AutomationInterface timeDependentInterface{
    "SurRegressionTimeDependent", "CDefineRegDlg2",
    "Survival Analysis regression models dialog, for time dependent covariates", timeDependentMembers};

} // namespace ozm::survival
