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
constexpr std::uint8_t quickAndPlots[] = {0, 2};

constexpr ControlTemplate okButton{.id = ControlOk, .text = "OK"};
constexpr ControlTemplate cancelButton{.id = ControlCancel, .text = "Cancel"};

// What several specifications have.

constexpr std::string_view quickPage[] = {"Quick"};
constexpr RoleTemplate timesRole{"Survival times or dates (1, 2 or 6 variables)", ListSurvivalTimes, 1, 6,
                                 true};
constexpr RoleTemplate censoringRole{"Censoring indicator", ListCensoring, 1, 1};
constexpr std::string_view completeWords[] = {
    "complete", "completed", "uncensored", "event",    "dead",       "death",    "died",        "deceased",
    "failed",   "failure",   "relapse",    "relapsed", "recurrence", "recurred", "progression", "progressed"};
constexpr std::string_view censoredWords[] = {"censored", "alive",     "living",   "survived",
                                              "survivor", "withdrawn", "withdrew", "lost"};
constexpr ControlTemplate completeCode{.id = SpecifyCompleteCode,
                                       .kind = ControlKind::CodeField,
                                       .text = "Code for c&omplete responses:",
                                       .codesOfRole = RoleCensoring,
                                       .usualCode = 1,
                                       .codeWords = completeWords};
constexpr ControlTemplate censoredCode{.id = SpecifyCensoredCode,
                                       .kind = ControlKind::CodeField,
                                       .text = "Code for &censored responses:",
                                       .codesOfRole = RoleCensoring,
                                       .usualCode = 0,
                                       .codeWords = censoredWords};
constexpr ControlTemplate selectCases{.id = TaskSelectCases, .text = "&Select Cases"};
constexpr ControlTemplate caseWeights{.id = TaskCaseWeights, .text = "Case &Weights"};

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
    selectCases,
    caseWeights,
    {.id = TaskResetSelections, .text = "&Reset Selections"},
};

constexpr DialogTemplate task{3059, "Survival and Failure Time Analysis", quickPage, taskControls};

// Kaplan-Meier: specification dialog.

constexpr RoleTemplate kaplanRoles[] = {timesRole, censoringRole};

constexpr ControlTemplate kaplanControls[] = {
    {.id = SpecifyVariables,
     .kind = ControlKind::VariableSelection,
     .text = "&Variables",
     .roles = kaplanRoles},
    completeCode,
    censoredCode,
    okButton,
    cancelButton,
    selectCases,
    caseWeights,
};

constexpr DialogTemplate kaplan{3030, "Product-Limit (Kaplan & Meier) Analysis", quickPage, kaplanControls};

// Kaplan-Meier: results.

constexpr ControlTemplate kaplanResultsControls[] = {
    {.id = KaplanSummaryBox, .kind = ControlKind::Summary, .text = ""},
    {.id = KaplanSummary,
     .text = "!249S&ummary:  Product-limit survival analysis",
     .pages = quickAndAdvanced},
    {.id = KaplanCurve, .text = "!228Survival cur&ve of all observations", .pages = quickAndPlots},
    {.id = KaplanPlot1, .text = "!228Survival &times vs. cum. proportion surviving", .pages = quick},
    {.id = KaplanLevel,
     .kind = ControlKind::Real,
     .text = "&Conf. Level:",
     .pages = quick,
     .decimals = 6,
     .isShare = true},
    {.id = KaplanPercentiles, .text = "ePercentiles of &survival function", .pages = advanced},
    {.id = KaplanPlot1Again, .text = "Plot &1", .pages = plots, .repeats = KaplanPlot1},
    {.id = KaplanPlot2, .text = "Plot &2", .pages = plots},
    {.id = KaplanPlot3, .text = "Plot &3", .pages = plots},
    cancelButton,
};

constexpr std::string_view kaplanResultsPages[] = {"Quick", "Advanced", "Function plots"};
constexpr DialogTemplate kaplanResults{3032, "Product-Limit (Kaplan-Meier) Analysis Results",
                                       kaplanResultsPages, kaplanResultsControls};

// Two samples: specification dialog.

constexpr RoleTemplate twoRoles[] = {timesRole, censoringRole, {"Grouping variable", ListGrouping, 1, 1}};

constexpr ControlTemplate twoControls[] = {
    {.id = SpecifyVariables, .kind = ControlKind::VariableSelection, .text = "&Variables", .roles = twoRoles},
    completeCode,
    censoredCode,
    {.id = SpecifyGroup1Code,
     .kind = ControlKind::CodeField,
     .text = "Code for group &1:",
     .codesOfRole = RoleGrouping},
    {.id = SpecifyGroup2Code,
     .kind = ControlKind::CodeField,
     .text = "Code for group &2:",
     .codesOfRole = RoleGrouping},
    okButton,
    cancelButton,
    selectCases,
    caseWeights,
};

constexpr DialogTemplate two{3036, "Comparing Survival in Two Groups", quickPage, twoControls};

// Two samples: results.

constexpr ControlTemplate twoResultsControls[] = {
    {.id = TwoSummaryBox, .kind = ControlKind::Summary, .text = ""},
    {.id = TwoSummary, .text = "!249S&ummary:  The five tests side by side", .pages = quick},
    {.id = TwoGehan, .text = "!249&Gehan-Wilcoxon test", .pages = quick},
    {.id = TwoCoxF, .text = "!249Cox &F test", .pages = quick},
    {.id = TwoCoxMantel, .text = "!249Cox-&Mantel test", .pages = quick},
    {.id = TwoLogRank, .text = "!249&Log-rank test", .pages = quick},
    {.id = TwoPetoPeto, .text = "!249&Peto and Peto's Wilcoxon test", .pages = quick},
    {.id = TwoLifeTables, .text = "!249Life table: p&roportion surviving by group", .pages = advanced},
    {.id = TwoPlotSurviving, .text = "!228Plot of proportion &surviving by group", .pages = advanced},
    {.id = TwoPlotCumulative,
     .text = "!228Plot of &cumulative proportion surviving by group",
     .pages = advanced},
    cancelButton,
};

constexpr std::string_view twoResultsPages[] = {"Quick", "Survival by group"};
constexpr DialogTemplate twoResults{3038, "Two-Sample Tests Results", twoResultsPages, twoResultsControls};

constexpr const DialogTemplate* templates[] = {&kaplan, &kaplanResults, &two, &twoResults, &task};

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

const DialogTemplate& TwoTemplate() {
    return two;
}

const DialogTemplate& TwoResultsTemplate() {
    return twoResults;
}

} // namespace ozm::survival
