#include "module/resources/ControlIds.h"
#include "module/resources/Resources.h"
#include "module/resources/SelectionListIds.h"
#include "module/resources/StringIds.h"

#include <cstdint>

namespace ozm::survival {
namespace {

constexpr std::uint8_t quick[] = {0};
constexpr std::uint8_t advanced[] = {1};
constexpr std::uint8_t plots[] = {2};
constexpr std::uint8_t quickAndAdvanced[] = {0, 1};

constexpr ControlTemplate okButton{.id = ControlOk, .text = "OK"};
constexpr ControlTemplate cancelButton{.id = ControlCancel, .text = "Cancel"};

// The startup dialog, with its page 3060.

constexpr ChoiceTemplate analyses[] = {
    {.text = StrLifeTables, .icon = 89, .command = StrLifeTables, .member = 1},
    {.text = StrKaplanMeier, .icon = 87, .command = StrKaplanMeier, .member = 2},
    {.text = StrTwoSamples, .icon = 109, .command = StrTwoSamples, .member = 3},
    {.text = StrKSamples, .icon = 108, .command = StrKSamples, .member = 4},
    {.text = StrRegression, .icon = 88, .command = StrRegression, .member = 5},
    {.text = 0, .icon = 319, .command = 7424, .member = 0},
    {.text = StrTimeDependent, .icon = 88, .command = StrTimeDependent, .member = 6},
};

constexpr ControlTemplate taskControls[] = {
    {.id = TaskList, .kind = ControlKind::List, .text = "", .pages = quick, .choices = analyses},
    okButton,
    cancelButton,
    {.id = TaskOpenData, .text = "Open &Data"},
    {.id = TaskSelectCases, .text = "&Select Cases"},
    {.id = TaskCaseWeights, .text = "Case &Weights"},
    {.id = TaskResetSelections, .text = "&Reset Selections"},
};

constexpr std::string_view taskPages[] = {"Quick"};
constexpr DialogTemplate task{3059, "Survival and Failure Time Analysis", taskPages, taskControls};

// Kaplan-Meier: specification.

constexpr RoleTemplate kaplanRoles[] = {
    {"Survival times or dates (1, 2 or 6 variables)", ListSurvivalTimes, 1, 6},
    {"Censoring indicator", ListCensoring, 1, 1},
};

constexpr ControlTemplate kaplanControls[] = {
    {.id = SpecifyVariables,
     .kind = ControlKind::VariableSelection,
     .text = "&Variables",
     .roles = kaplanRoles},
    {.id = SpecifyCompleteCode,
     .kind = ControlKind::CodeField,
     .text = "Code for c&omplete responses:",
     .codesOfRole = RoleCensoring},
    {.id = SpecifyCensoredCode,
     .kind = ControlKind::CodeField,
     .text = "Code for &censored responses:",
     .codesOfRole = RoleCensoring},
    okButton,
    cancelButton,
    {.id = TaskSelectCases, .text = "&Select Cases"},
    {.id = TaskCaseWeights, .text = "Case &Weights"},
};

constexpr std::string_view kaplanPages[] = {"Quick"};
constexpr DialogTemplate kaplan{3030, "Product-Limit (Kaplan & Meier) Analysis", kaplanPages, kaplanControls};

// Kaplan-Meier: results.

constexpr ControlTemplate kaplanResultsControls[] = {
    {.id = KaplanSummaryBox, .kind = ControlKind::Summary, .text = ""},
    {.id = KaplanSummary,
     .text = "!249S&ummary:  Product-limit survival analysis",
     .pages = quickAndAdvanced},
    {.id = KaplanPlot1, .text = "!228Survival &times vs. cum. proportion surviving", .pages = quick},
    {.id = KaplanLevel, .kind = ControlKind::Real, .text = "&Conf. Level:", .pages = quick, .decimals = 6},
    {.id = KaplanPercentiles, .text = "ePercentiles of &survival function", .pages = advanced},
    {.id = KaplanPlot1Again, .text = "Plot &1", .pages = plots},
    {.id = KaplanPlot2, .text = "Plot &2", .pages = plots},
    {.id = KaplanPlot3, .text = "Plot &3", .pages = plots},
    cancelButton,
};

constexpr std::string_view kaplanResultsPages[] = {"Quick", "Advanced", "Function plots"};
constexpr DialogTemplate kaplanResults{3032, "Product-Limit (Kaplan-Meier) Analysis Results",
                                       kaplanResultsPages, kaplanResultsControls};

constexpr const DialogTemplate* templates[] = {&kaplan, &kaplanResults, &task};

} // namespace

std::span<const DialogTemplate* const> DialogTemplates() {
    return templates;
}

const DialogTemplate& TaskTemplate() {
    return task;
}

const DialogTemplate& KaplanTemplate() {
    return kaplan;
}

const DialogTemplate& KaplanResultsTemplate() {
    return kaplanResults;
}

} // namespace ozm::survival
