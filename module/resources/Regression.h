#pragma once

#include "module/resources/RegressionTexts.h"
#include "module/resources/Shared.h"

// Regression models for censored data: the specification, and the two dialogs of the estimation.

namespace ozm::survival {

OZM_STRINGS(regressionStrings, OZM_REGRESSION_STRINGS);

inline constexpr double defaultCriterion = 0.0001;
inline constexpr double leastCriterion = 0.00001;
inline constexpr int defaultIterations = 50;

// Specification.

enum RegressionControl : int {
    RegModel = 1020,
    RegStrataCodes = 1021,
    RegDifferentBaselines = 1022,
    RegNonDefault = 1023,
    RegMissing = 1024,
};

/// Places of the further boxes of variables.
enum RegressionRole : int { RoleCovariates = 2, RoleStrata = 3 };
/// Choices of `RegMissing`.
enum RegressionMissing : int { RegLeaveOut = 1, RegPutMeans = 2 };

inline constexpr RoleTemplate regressionRoles[] = {
    {"Survival times (1), dates (2 or 6):", ListSurvivalTimes, 1, 6, true},
    censoringRole,
    {"Covariates (independent variables):", ListCovariates, 1, 40, true},
    {"Stratification variable (optional):", ListStrata, 0, 1},
};
inline constexpr ChoiceTemplate regressionModels[] = {{.text = StrRegCox, .member = 1},
                                                      {.text = StrRegExponential, .member = 2},
                                                      {.text = StrRegLognormal, .member = 3},
                                                      {.text = StrRegNormal, .member = 4}};
inline constexpr ChoiceTemplate regressionMissing[] = {{.text = StrRegCasewise},
                                                       {.text = StrRegSubstitution}};

inline constexpr ControlTemplate regressionControls[] = {
    {.id = RegModel, .kind = ControlKind::RadioGroup, .text = "Model", .choices = regressionModels},
    {.id = SpecifyVariables,
     .kind = ControlKind::VariableSelection,
     .text = "&Variables",
     .roles = regressionRoles},
    completeCodeField,
    censoredCodeField,
    {.id = RegStrataCodes,
     .kind = ControlKind::CodeList,
     .text = "Codes of the s&trata (none: all):",
     .codesOfRole = RoleStrata,
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
     .text = "Missing values of covariates",
     .choices = regressionMissing},
    okButton,
    cancelButton,
    selectCasesButton,
    caseWeightsButton,
};
inline constexpr DialogTemplate regressionTemplate{3048, "Regression Models for Censored Data", quickPage,
                                                   regressionControls};

inline constexpr std::string_view nonDefaultEstimation = "NonDefaultStartValuesIterations";
inline constexpr AutomationMember regressionMembers[] = {
    {"TypeOfSurvivalRegressionModel", MemberKind::Property, MemberType::Enumeration, RegModel,
     "Type of survival regression model", "SurRegressionModel"},
    variablesMember,
    completeCodeMember,
    censoredCodeMember,
    CodesMember(RegStrataCodes),
    {"EqualCoefficientsDifferentBaselineH0", MemberKind::Property, MemberType::Boolean, RegDifferentBaselines,
     "Equal coefficients and different baseline H0, for stratified analysis"},
    {nonDefaultEstimation, MemberKind::Property, MemberType::Boolean, RegNonDefault,
     "Non-default start values, iterations, etc."},
    {.name = "CasewiseDeletionOfMD",
     .type = MemberType::Boolean,
     .control = RegMissing,
     .help = "Casewise (listwise) deletion of missing data",
     .choice = RegLeaveOut},
    {.name = "MeanSubstitutionOfMD",
     .type = MemberType::Boolean,
     .control = RegMissing,
     .help = "Mean substitution of missing data",
     .choice = RegPutMeans},
};
inline constexpr AutomationInterface regressionInterface{
    "SurRegression", "CDefineRegDlg", "Survival Analysis regression models dialog", regressionMembers};

// Estimation.

enum EstimationControl : int {
    RegCriterion = 1030,
    RegIterations = 1031,
    RegStartValues = 1032,
    RegEditStartValues = 1033,
    RegReviewExpressions = 1034, ///< where there are expressions
    RegModelInWords = 1035,
};

inline constexpr ControlTemplate criterionField{.id = RegCriterion,
                                                .kind = ControlKind::Real,
                                                .text = "&Convergence criterion:",
                                                .decimals = 8,
                                                .range = {.least = leastCriterion,
                                                          .greatest = 1,
                                                          .withGreatest = false,
                                                          .message = StrRegBadCriterion,
                                                          .resetTo = defaultCriterion}};
/// The message names a smaller maximum than the one that is accepted; users know it so.
inline constexpr ControlTemplate iterationsField{
    .id = RegIterations,
    .kind = ControlKind::Integer,
    .text = "&Maximum number of iterations:",
    .range = {.least = 3, .greatest = 200, .message = StrRegBadIterations, .resetTo = defaultIterations}};

inline constexpr ControlTemplate estimationControls[] = {
    criterionField,
    iterationsField,
    {.id = RegStartValues,
     .kind = ControlKind::NumberList,
     .text = "&Start values:",
     .hint = StrRegStartHint},
    {.id = RegEditStartValues, .text = "Start &values by name..."},
    {.id = RegReviewExpressions, .text = "&Review expressions"},
    okButton,
    cancelButton,
};
/// One dialog in three sizes, by the number of times and the model.
inline constexpr std::string_view estimationTitle = "Model Parameter Estimation";
inline constexpr DialogTemplate estimationTemplates[] = {
    {3019, estimationTitle, quickPage, estimationControls},
    {3020, estimationTitle, quickPage, estimationControls},
    {3021, estimationTitle, quickPage, estimationControls}};

inline constexpr AutomationMember estimationMembers[] = {
    {"MaxNumberOfIterations", MemberKind::Property, MemberType::Integer, RegIterations,
     "Maximum number of iterations"},
    {"ConvergenceCriterion", MemberKind::Property, MemberType::Real, RegCriterion, "Convergence criterion"},
    {"StartValues", MemberKind::Property, MemberType::Numbers, RegStartValues, "Start values"},
    OutputMember("ReviewExpressionsForTimeDependentCovariates", RegReviewExpressions,
                 "Review expressions for time dependent covariates"),
};
inline constexpr AutomationInterface estimationInterface{"SurRegressionEstimation", "RegEstDlg",
                                                         "Survival Analysis regression estimation dialog",
                                                         estimationMembers, nonDefaultEstimation};

// Estimation with the defaults.

inline constexpr ControlTemplate estimationSpecificationControls[] = {
    {.id = RegModelInWords, .kind = ControlKind::Summary, .text = ""},
    criterionField,
    iterationsField,
    okButton,
    cancelButton,
};
inline constexpr DialogTemplate estimationSpecificationTemplate{3051, "Regression Model Estimation",
                                                                quickPage, estimationSpecificationControls};
/// The same members as far as the dialog has their controls; the type library lists the one above.
inline constexpr AutomationInterface estimationSpecificationInterface{
    "SurRegressionEstimation", "CRegSpecDlg", "Survival Analysis regression estimation dialog",
    std::span{estimationMembers}.first(2), nonDefaultEstimation};

} // namespace ozm::survival
