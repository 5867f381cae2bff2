#pragma once

#include "module/resources/SelectionListIds.h"
#include "module/resources/StringList.h"
#include "support/automation/TypeLibrary.h"
#include "support/dialogs/DialogTemplate.h"

#include <cstdint>
#include <string_view>

// What several analyses share: texts of reading passes, headers and outputs, and the controls of
// specifications. Text numbers from 20000 on are this module's own choice; scripts and translations may rely
// on the others.

// clang-format off
#define OZM_SHARED_STRINGS(S) \
    S(StrInvalidTimeVariables, 12296, \
      "Invalid number of variables.  To specify survival times select (a) 1 variable (with survival " \
      "times), (b) 2 variables with dates, or (c) 6 variables representing dates.") \
    S(StrIdenticalCensoringCodes, 12298, \
      "Codes for censored and complete observations are identical. Select two different codes.") \
    S(StrReadingDataFile, 14148, " Reading data file ... ") \
    S(StrTooManyCases32000, 14150, \
      "Too many valid datapoints (max=32000; contact Korvana technical support for availability of " \
      "larger versions).") \
    S(StrUnexpectedError, 20002, "The analysis stopped on an unexpected error; nothing was computed.") \
    S(StrSorting, 20003, " Sorting ... ") \
    S(StrPrinting, 20004, " Printing... ") \
    S(StrSpreadsheetFailed, 20005, "The results spreadsheet could not be created.") \
    S(StrNoCensoringVariable, 20006, "Select one variable with the censoring indicator.") \
    S(StrDataFile, 20007, "Data file:  ") \
    S(StrNoGroupingVariable, 20008, "Select one variable with the group codes.") \
    S(StrNoResults, 20009, \
      "The results of this dialog are gone, as another analysis was started or other data were opened; go " \
      "back and run it again.") \
    S(StrNoteDatesAsTimes, 20019, \
      "%1 holds dates, and its day numbers were taken as survival times: give two variables, the start and the end.") \
    S(StrNoteStartAndEnd, 20020, "Two time variables are start and end: the survival time is %1 - %2.") \
    S(StrNoteLeftOut, 20021, "%1 of %2 cases left out: %3.") \
    S(StrNoteSelectedLeftOut, 20022, "%1 of %2 selected cases left out: %3.") \
    S(StrWhyNoValue, 20023, "with no value of %1") \
    S(StrWhyOtherCode, 20024, "with a code of %1 other than %2") \
    S(StrWhyTooLarge, 20025, "with a value of %1 beyond 1e15") \
    S(StrWhyInvalidDate, 20026, "with an invalid date") \
    S(StrWhyNegative, 20027, "with a negative survival time") \
    S(StrWhyEndFirst, 20028, "with %1 before %2") \
    S(StrWhyNoCodes, 20029, "as no codes of %1 are given: give the two whose cases are to be analysed") \
    S(StrWeightMissingOne, 20030, "%1 case without a weight in %2 counts once.") \
    S(StrWeightMissing, 20031, "%1 cases without a weight in %2 count once each.") \
    S(StrWeightZeroOne, 20032, "%1 case with a weight of 0 or less in %2 counts once.") \
    S(StrWeightZero, 20033, "%1 cases with a weight of 0 or less in %2 count once each.") \
    S(StrWeightSmallOne, 20034, "%1 case with a weight below 2 in %2 that is not 1 counts once.") \
    S(StrWeightSmall, 20035, "%1 cases with a weight below 2 in %2 that is not 1 count once each.") \
    S(StrWeightRoundedOne, 20036, \
      "%1 case with a weight in %2 that is not a whole number: it is rounded up (2.1 would count three " \
      "times).") \
    S(StrWeightRounded, 20037, \
      "%1 cases with weights in %2 that are not whole numbers: they are rounded up (2.1 would count " \
      "three times).") \
    S(StrNoCaseHas, 20038, "(no case has %1)") \
    S(StrNeedThreeValid, 20040, "Three valid observations are needed.") \
    S(StrAllCensored, 20041, \
      "Every valid observation has the code of censored ones: are the two codes exchanged?") \
    S(StrOutputName, 20042, "Output: %1 (%2).") \
    S(StrSelectedVariables, 20043, "%1 variables are selected: %2.") \
    S(StrCasesReadOne, 20044, "%1 case in the data, %2 selected, %3 valid.") \
    S(StrCasesRead, 20045, "%1 cases in the data, %2 selected, %3 valid.") \
    S(StrCodesAmongCases, 20046, "Codes of '%1' among the selected cases: %2.") \
    S(StrNoCodes, 20047, "none") \
    S(StrOneCase, 20048, "%1 (%2 case)") \
    S(StrManyCases, 20049, "%1 (%2 cases)") \
    S(StrNotSet, 20050, "not set") \
    S(StrAnd, 20051, " and ") \
    S(StrOr, 20052, " or ") \
    S(StrAndMore, 20053, ", and %1 more") \
    S(StrOrMore, 20054, " or %1 more") \
    S(StrTimesVariable, 20100, "Variable with survival times:") \
    S(StrTimesFromDates, 20101, "Survival times computed from dates (MM-DD-YY)") \
    S(StrVariables, 20102, "Variables:") \
    S(StrStartMonth, 20103, "(month; beginning of observation)") \
    S(StrStartDay, 20104, "(day;   beginning of observation)") \
    S(StrStartYear, 20105, "(year;  beginning of observation)") \
    S(StrEndMonth, 20106, "(month; at termination or censoring)") \
    S(StrEndDay, 20107, "(day;   at termination or censoring)") \
    S(StrEndYear, 20108, "(year;  at termination or censoring)") \
    S(StrStartDate, 20109, "(beginning of observation)") \
    S(StrEndDate, 20110, "(time at termination or censoring)") \
    S(StrCensoringVariable, 20111, "Variable with censoring indicator:") \
    S(StrCodes, 20112, "Codes:") \
    S(StrCompleteObservations, 20113, "(complete observations)") \
    S(StrCensoredObservations, 20114, "(censored observations)") \
    S(StrGroupVariable, 20115, "Variable with group codes:") \
    S(StrGroup1, 20116, "(Group 1)") \
    S(StrGroup2, 20117, "(Group 2)") \
    S(StrUnsetCode, 20118, "--") \
    S(StrTableInput, 20119, "Input data is a table of survival times") \
    S(StrDaysComputed, 20202, "number of days computed from data") \
    S(StrGraphicsError, 20251, " Error in graphics routine.") \
    S(StrFewerThan3Values, 20252, " Fewer than 3 valid values.")
// clang-format on

namespace ozm::survival {

OZM_STRINGS(sharedStrings, OZM_SHARED_STRINGS);

/// Controls that several specification dialogs have.
enum SpecifyControl : int {
    CaseWeights = 207,
    SelectCases = 214,
    SpecifyVariables = 1001,
    SpecifyCompleteCode = 1002,
    SpecifyCensoredCode = 1003,
};

/// Places of the boxes of a variable-selection control.
enum SpecifyRole : int { RoleTimes = 0, RoleCensoring = 1, RoleGrouping = 2 };

inline constexpr std::string_view quickPage[] = {"Quick"};
inline constexpr std::uint8_t onFirstPage[] = {0};
inline constexpr std::uint8_t onSecondPage[] = {1};
inline constexpr std::uint8_t onThirdPage[] = {2};

inline constexpr ControlTemplate okButton{.id = ControlOk, .text = "OK"};
inline constexpr ControlTemplate cancelButton{.id = ControlCancel, .text = "Cancel"};
inline constexpr ControlTemplate selectCasesButton{.id = SelectCases, .text = "&Select Cases"};
inline constexpr ControlTemplate caseWeightsButton{.id = CaseWeights, .text = "Case &Weights"};

inline constexpr RoleTemplate timesRole{"Survival times or dates (1, 2 or 6 variables)", ListSurvivalTimes, 1,
                                        6, true};
inline constexpr RoleTemplate censoringRole{"Censoring indicator", ListCensoring, 1, 1};
inline constexpr RoleTemplate groupingRole{"Grouping variable", ListGrouping, 1, 1};

inline constexpr std::string_view completeWords[] = {
    "complete", "completed", "uncensored", "event",    "dead",       "death",    "died",        "deceased",
    "failed",   "failure",   "relapse",    "relapsed", "recurrence", "recurred", "progression", "progressed"};
inline constexpr std::string_view censoredWords[] = {"censored", "alive",     "living",   "survived",
                                                     "survivor", "withdrawn", "withdrew", "lost"};
inline constexpr ControlTemplate completeCodeField{.id = SpecifyCompleteCode,
                                                   .kind = ControlKind::CodeField,
                                                   .text = "Code for c&omplete responses:",
                                                   .codesOfRole = RoleCensoring,
                                                   .usualCode = 1,
                                                   .codeWords = completeWords};
inline constexpr ControlTemplate censoredCodeField{.id = SpecifyCensoredCode,
                                                   .kind = ControlKind::CodeField,
                                                   .text = "Code for &censored responses:",
                                                   .codesOfRole = RoleCensoring,
                                                   .usualCode = 0,
                                                   .codeWords = censoredWords};

inline constexpr AutomationMember variablesMember{"Variables", MemberKind::Property, MemberType::Variables,
                                                  SpecifyVariables, "Variables for analysis"};
inline constexpr AutomationMember completeCodeMember{"CodeForCompleteResponses", MemberKind::Property,
                                                     MemberType::Code, SpecifyCompleteCode,
                                                     "Code for complete responses (observed failures)"};
inline constexpr AutomationMember censoredCodeMember{"CodeForCensoredResponses", MemberKind::Property,
                                                     MemberType::Code, SpecifyCensoredCode,
                                                     "Code for censored responses"};

/// The member that makes the same output as the button with this number.
constexpr AutomationMember OutputMember(std::string_view name, int control, std::string_view help) {
    return {name, MemberKind::Action, MemberType::None, control, help};
}

/// Of the group or stratification variable.
constexpr AutomationMember CodesMember(int control) {
    return {"Codes", MemberKind::Property, MemberType::Codes, control, "Codes, identifying groups (classes)"};
}

} // namespace ozm::survival
