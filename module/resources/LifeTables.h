#pragma once

#include "module/resources/LifeTableTexts.h"
#include "module/resources/Shared.h"

// Life tables and fitted survival distributions.

namespace ozm::survival {

// Specifications: raw data, or a table of survival times. They are one dialog for people, so they have one
// number.

enum LifeControl : int {
    LifeInputType = 197,
    LifeIntervalMode = 1010,
    LifeIntervals = 1011,
    LifeStep = 1012,
    LifeCorrect = 1013,
    LifeEntering = 1014,
};

/// Choices of `LifeInputType` and `LifeIntervalMode`, from 1.
enum LifeChoice : int { LifeFromRawData = 1, LifeFromTable = 2, LifeByNumber = 1, LifeByStep = 2 };

inline constexpr RoleTemplate lifeRawRoles[] = {
    {"Survival times (1), dates (2 or 6):", ListSurvivalTimes, 1, 6, true}, censoringRole};
inline constexpr RoleTemplate lifeTableRoles[] = {
    {"Lower interval:", ListIntervalLimits, 1, 1, true},
    {"No. censored: ", ListWithdrawn, 1, 1, true},
    {"No. of obs. dying: ", ListDying, 1, 1, true},
};

inline constexpr ChoiceTemplate lifeInputTypes[] = {{.text = StrLifeRawData, .member = 1},
                                                    {.text = StrLifeTableOfTimes, .member = 2}};
inline constexpr ChoiceTemplate lifeIntervalModes[] = {{.text = StrLifeByNumber}, {.text = StrLifeByStep}};

inline constexpr ControlTemplate lifeInputTypeGroup{
    .id = LifeInputType, .kind = ControlKind::RadioGroup, .text = "Input data", .choices = lifeInputTypes};
inline constexpr ControlTemplate lifeCorrectBox{.id = LifeCorrect,
                                                .kind = ControlKind::CheckBox,
                                                .text = "Correct &intervals containing no terminations"};

inline constexpr ControlTemplate lifeRawControls[] = {
    lifeInputTypeGroup,
    {.id = SpecifyVariables,
     .kind = ControlKind::VariableSelection,
     .text = "&Variables",
     .roles = lifeRawRoles},
    completeCodeField,
    censoredCodeField,
    {.id = LifeIntervalMode,
     .kind = ControlKind::RadioGroup,
     .text = "Intervals",
     .choices = lifeIntervalModes},
    {.id = LifeIntervals,
     .kind = ControlKind::Integer,
     .text = "Number of int&ervals:",
     .range = {.least = 3, .greatest = 30}},
    {.id = LifeStep,
     .kind = ControlKind::Real,
     .text = "Step si&ze:",
     .decimals = 8,
     .range = {.least = 1e-8, .greatest = 1e7}},
    lifeCorrectBox,
    okButton,
    cancelButton,
    selectCasesButton,
    caseWeightsButton,
};
inline constexpr ControlTemplate lifeTableControls[] = {
    lifeInputTypeGroup,
    {.id = SpecifyVariables,
     .kind = ControlKind::VariableSelection,
     .text = "&Variables",
     .roles = lifeTableRoles},
    {.id = LifeEntering,
     .kind = ControlKind::Integer,
     .text = "Number of observations &entering the first interval:",
     .range = {.least = 5, .greatest = 99'999'999},
     .hint = StrLifeEnteringHint},
    lifeCorrectBox,
    okButton,
    cancelButton,
    selectCasesButton,
};

inline constexpr std::string_view lifeTitle = "Life Table & Distribution of Survival Times";
inline constexpr DialogTemplate lifeRawTemplate{3023, lifeTitle, quickPage, lifeRawControls};
inline constexpr DialogTemplate lifeTableTemplate{3023, lifeTitle, quickPage, lifeTableControls};

inline constexpr AutomationMember lifeInputTypeMember{"TypeOfInputData",       MemberKind::Property,
                                                      MemberType::Enumeration, LifeInputType,
                                                      "Type of input data",    "SurTypeOfInputDataTabs"};
inline constexpr AutomationMember lifeCorrectMember{"CorrectIntervalsContainingNoTerminations",
                                                    MemberKind::Property, MemberType::Boolean, LifeCorrect,
                                                    "Correct intervals containing no terminations"};

inline constexpr AutomationMember lifeRawMembers[] = {
    lifeInputTypeMember,
    variablesMember,
    completeCodeMember,
    censoredCodeMember,
    {.name = "UseUserDefinedNumberOfIntervals",
     .type = MemberType::Boolean,
     .control = LifeIntervalMode,
     .help = "Use user defined number of intervals",
     .choice = LifeByNumber},
    {"NumberOfIntervals", MemberKind::Property, MemberType::Integer, LifeIntervals, "Number of intervals"},
    {.name = "UseUserDefinedStepSize",
     .type = MemberType::Boolean,
     .control = LifeIntervalMode,
     .help = "Use user defined step size",
     .choice = LifeByStep},
    {"StepSize", MemberKind::Property, MemberType::Real, LifeStep, "Step size"},
    lifeCorrectMember,
};
inline constexpr AutomationInterface lifeRawInterface{
    "SurLifeTableRaw", "CDefineLifeRawDlg", "Survival Analysis life tables specifications dialog, raw data",
    lifeRawMembers};

inline constexpr AutomationMember lifeTableMembers[] = {
    lifeInputTypeMember,
    variablesMember,
    lifeCorrectMember,
    {"NumberEnteringFirstInterval", MemberKind::Property, MemberType::Integer, LifeEntering,
     "Number of observations entering the first interval"},
};
inline constexpr AutomationInterface lifeTableInterface{
    "SurLifeTableTable", "CDefineLifeTableDlg",
    "Survival Analysis life tables specifications dialog, life table input", lifeTableMembers};

// Results.

enum LifeResultsControl : int {
    LifeSummaryBox = 1160,
    LifeSummary = 1161,
    LifeDistribution = 1162,
    LifeParameters = 1163,
    LifeHazard = 1164,
    LifeSurvival = 1165,
    LifeDensity = 1166,
    LifePlotHazard = 1167,
    LifePlotSurvival = 1168,
    LifePlotDensity = 1169,
    LifeRanking = 1170,
    LifeWeighting = 1171,
    LifePlotModels = 1172,
    LifeProportions = 1173,
    LifeQuantiles = 1174,
    LifeTimes = 1175,
    LifeAtTimes = 1176,
    LifeLevel = 1177,
};

inline constexpr ChoiceTemplate lifeModels[] = {{.text = StrLifeExponential, .member = 1},
                                                {.text = StrLifeLinearHazard, .member = 2},
                                                {.text = StrLifeGompertz, .member = 3},
                                                {.text = StrLifeWeibull, .member = 4}};

inline constexpr ControlTemplate lifeResultsControls[] = {
    {.id = LifeSummaryBox, .kind = ControlKind::Summary, .text = ""},
    {.id = LifeSummary, .text = "!249S&ummary: Life table", .pages = onFirstPage},
    {.id = LifeParameters, .text = "!249&Parameter estimates", .pages = onFirstPage},
    {.id = LifeRanking, .text = "!249&Ranking of the fits", .pages = onFirstPage},
    {.id = LifeWeighting,
     .kind = ControlKind::Integer,
     .text = "&Weights (1, 2 or 3):",
     .pages = onFirstPage,
     .range = {.least = 1, .greatest = 3},
     .hint = StrLifeWeightsNote},
    {.id = LifePlotModels, .text = "!228Plot of all &models", .pages = onFirstPage},
    {.id = LifeDistribution,
     .kind = ControlKind::RadioGroup,
     .text = "Distribution",
     .pages = onSecondPage,
     .choices = lifeModels},
    {.id = LifeHazard, .text = "!249&Hazard function", .pages = onSecondPage},
    {.id = LifeSurvival, .text = "!249&Survival function", .pages = onSecondPage},
    {.id = LifeDensity, .text = "!249Probability &density function", .pages = onSecondPage},
    {.id = LifePlotHazard, .text = "!228Plot of h&azard function", .pages = onSecondPage},
    {.id = LifePlotSurvival, .text = "!228Plot of sur&vival function", .pages = onSecondPage},
    {.id = LifePlotDensity, .text = "!228Plot of probability densit&y function", .pages = onSecondPage},
    {.id = LifeProportions,
     .kind = ControlKind::Text,
     .text = "&Proportions surviving (empty: the quartiles):",
     .pages = onThirdPage},
    {.id = LifeQuantiles, .text = "!249Survival times &by proportion surviving", .pages = onThirdPage},
    {.id = LifeTimes,
     .kind = ControlKind::Text,
     .text = "&Times (empty: the interval starts):",
     .pages = onThirdPage},
    {.id = LifeAtTimes, .text = "!249&Survival at these times", .pages = onThirdPage},
    {.id = LifeLevel,
     .kind = ControlKind::Real,
     .text = "&Conf. Level:",
     .pages = onThirdPage,
     .decimals = 6,
     .isShare = true,
     .range = {.least = 0, .greatest = 1, .withLeast = false, .withGreatest = false}},
    cancelButton,
};

inline constexpr std::string_view lifeResultsPages[] = {"Quick", "Functions", "Quantiles"};
inline constexpr DialogTemplate lifeResultsTemplate{3026, "Life Table & Survival Time Distribution Results",
                                                    lifeResultsPages, lifeResultsControls};

inline constexpr AutomationMember lifeResultsMembers[] = {
    OutputMember("Summary", LifeSummary, "Summary, life table"),
    {"Distribution", MemberKind::Property, MemberType::Enumeration, LifeDistribution,
     "Distribution, to fit to the life table", "SurResultsForModel"},
    OutputMember("ParameterEstimates", LifeParameters, "Parameter estimates"),
    OutputMember("HazardFunction", LifeHazard, "Estimates of hazard function"),
    OutputMember("SurvivalFunction", LifeSurvival, "Estimates of survival function"),
    OutputMember("ProbabilityDensityFunction", LifeDensity, "Estimates of probability density function"),
    OutputMember("PlotOfHazardFunction", LifePlotHazard, "Plot of hazard function"),
    OutputMember("PlotOfSurvivalFunction", LifePlotSurvival, "Plot of survival function"),
    OutputMember("PlotOfProbabilityDensityFunction", LifePlotDensity, "Plot of probability density function"),
    Added(OutputMember("RankingOfFits", LifeRanking, "Ranking of all fits by Akaike's criterion")),
    Added({"Weighting", MemberKind::Property, MemberType::Integer, LifeWeighting,
           "The weights (1, 2 or 3) of the fits in the plot of all models"}),
    Added(OutputMember("PlotOfAllModels", LifePlotModels,
                       "Plot of the survival functions of all models beside the observed one")),
    Added(
        {"ProportionsSurviving", MemberKind::Property, MemberType::Text, LifeProportions,
         "The proportions surviving for which survival times are estimated, separated by blanks or commas"}),
    Added(OutputMember("SurvivalTimes", LifeQuantiles,
                       "Survival times by proportion surviving, of each adequate fit")),
    Added({"Times", MemberKind::Property, MemberType::Text, LifeTimes,
           "The times at which survival is estimated, separated by blanks or commas"}),
    Added(OutputMember("SurvivalAtTimes", LifeAtTimes, "Survival at given times, of each adequate fit")),
    Added({"ConfidenceLevel", MemberKind::Property, MemberType::Real, LifeLevel,
           "Confidence level of the limits, between 0 and 1"}),
};
inline constexpr AutomationInterface lifeResultsInterface{"SurLifeTableResults", "CLifeResultsDlg",
                                                          "Survival Analysis life tables results dialog",
                                                          lifeResultsMembers};

} // namespace ozm::survival
