#pragma once

#include "module/resources/Shared.h"

// Life tables and fitted survival distributions.

// clang-format off
#define OZM_LIFE_TABLE_STRINGS(S) \
    S(StrLifeTooManyCases, 20600, "Too many valid datapoints and not enough memory.") \
    S(StrLifeTooFewUncensored, 20601, "Not enough valid uncensored cases to perform analysis.") \
    S(StrLifeTooFewValid, 20602, "Fewer than two valid cases.") \
    S(StrLifeManyCensored, 20603, "Less than 2 uncensored cases; cannot compute life table.") \
    S(StrLifeTooManyIntervals, 20604, "Too many intervals; max=30.") \
    S(StrLifeTooManyObservations, 20605, "Too many observations; max=99,999,999.") \
    S(StrLifeNegativeDying, 20606, "Table incorrectly specified (negative no. dying); check your data.") \
    S(StrLifeTooFewIntervals, 20607, "Too few intervals; min=3.") \
    S(StrLifeNoIntervals, 20608, "Number of intervals less or equal zero.") \
    S(StrLifeNegativeEntering, 20609, "At least one interval has less than or equal to 0 cases alive.") \
    S(StrLifeNobodyEnters, 20610, "Less than or equal to 0 cases alive in first interval.") \
    S(StrLifeInadequate, 20611, \
      "At least one model is inadequate because of out-of-range parameter estimates.") \
    S(StrLifeNoWidth, 20612, \
      "At least one interval has width of less/equal zero; check your input data file") \
    S(StrLifeTabulation, 20613, "Error in tabulation routine...") \
    S(StrLifeStepAdjusted, 20614, "Invalid number of intervals; stepsize adjusted.") \
    S(StrLifeNoMemory, 20615, "Not enough memory; close other applications.") \
    S(StrLifeWeightsOff, 20616, \
      "Case weights not allowed when reading tables; weights are turned off.") \
    S(StrLifeNoFits, 20617, \
      "Parameter estimation failed; cannot display or plot parameter estimates.") \
    S(StrLifeFewerThan3Values, 20618, " Fewer than 3 valid values. ") \
    S(StrLifeSystemError, 20619, " System error...") \
    S(StrLifeSelectTable, 20620, "Select vars. for table (lower limit, no. censored, no. dying)") \
    S(StrLifeEnteringHint, 20621, "Specify no. of Obs. in 1st interval, for help press F1") \
    S(StrLifeRawData, 20622, "&Raw data, one case per observation") \
    S(StrLifeTableOfTimes, 20623, "&Table of survival times, one case per interval") \
    S(StrLifeByNumber, 20624, "&number of intervals") \
    S(StrLifeByStep, 20625, "ste&p size") \
    S(StrLifeSorting, 20626, " Sorting survival times ... ") \
    S(StrLifeComputing, 20627, " Computing life table ... ") \
    S(StrLifePreparing, 20628, "Computing ...") \
    S(StrLifeCapacity, 20630, \
      "This run has room for %1 valid observations, copies of weighted cases counted: select fewer cases or use " \
      "smaller weights.") \
    S(StrLifeManyCensoredCases, 20631, \
      "%1 cases have the code of censored observations, more than the %2 that are valid.") \
    S(StrLifeStepDetail, 20632, \
      "The largest survival time, %1, is %2 steps of %3; there may be 4 to 29. The number of intervals, %4, is used " \
      "from now on.") \
    S(StrLifeRowsRead, 20633, "%1 intervals were read from the first %2 selected rows.") \
    S(StrLifeCasesAlive, 20634, \
      "Interval %1, from %2, begins with %3 alive: the number entering the first interval, %4, is smaller than the " \
      "numbers withdrawn and dying before.") \
    S(StrLifeWidthDetail, 20635, "The intervals %1 and %2 both begin at %3.") \
    S(StrLifeAllTimesZero, 20636, "All survival times are 0.") \
    S(StrLifeEnteringTooFew, 20637, \
      "In the last interval, from %1, more are withdrawn or die (%2) than enter it (%3).") \
    S(StrLifeNobodyDied, 20638, "Nobody died: all %1 valid observations are censored.") \
    S(StrLifeRowsLeftOut, 20639, "%1 of %2 rows left out: %3.") \
    S(StrLifeRowNoValue, 20640, "%1 without a value of %2") \
    S(StrLifeRowOutOfRange, 20641, "%1 with a value of %2 outside 0 to %3") \
    S(StrLifeEnteringFromData, 20642, \
      "%1 enter the first interval: the number of all that are withdrawn or die, as no other number was given.") \
    S(StrLifeRowsUnused, 20643, \
      "The table ends at %1, where nobody is left; later intervals are not used.") \
    S(StrLifeNotFromZero, 20644, \
      "The table begins at %1, and the distributions that are fitted begin at 0: their survival is taken as 1 at %1, " \
      "and as that since 0 at all later limits. For fits that begin with the table, subtract %1 from its limits.") \
    S(StrLifeBadNumbers, 20645, "The list of numbers cannot be used.") \
    S(StrLifeBadProportion, 20646, "'%1' is no proportion between 0 and 1, as in 0.75 0.5 0.25.") \
    S(StrLifeBadTime, 20647, "'%1' is no time of 0 or more, as in 1 2.5 10.") \
    S(StrLifeNoTimes, 20648, "No interval starts after 0: give the times.") \
    S(StrLifeEnteringRounded, 20649, \
      "%1 enter the first interval: the number of all that are withdrawn or die, %2, as a whole number from 5 to " \
      "99,999,999, as no other number was given.") \
    S(StrLifeResults, 20650, "Life Table & Survival Time Distribution Results ") \
    S(StrLifeVariable, 20651, "Variable: ") \
    S(StrLifeCensoringVariable, 20652, "Variable with censoring indicator: ") \
    S(StrLifeTableVariables, 20653, "Variables:  Lower limits for intervals: ") \
    S(StrLifeWithdrawnVariable, 20654, "Number withdrawn (censored): ") \
    S(StrLifeDyingVariable, 20655, "Number dying: ") \
    S(StrLifeValid, 20656, "Total number of valid observations: ") \
    S(StrLifeUncensored, 20657, "uncensored: ") \
    S(StrLifeCensored, 20658, " censored:") \
    S(StrLifeTable, 20660, "Life Table") \
    S(StrLifeColNumber, 20661, "Intno.") \
    S(StrLifeColInterval, 20662, "Interval") \
    S(StrLifeColStart, 20663, "Start   ") \
    S(StrLifeColMid, 20664, " Mid    ") \
    S(StrLifeColPoint, 20665, "Point   ") \
    S(StrLifeColWidth, 20666, "Width   ") \
    S(StrLifeColCount, 20667, "Number  ") \
    S(StrLifeColEntering, 20668, "Entering") \
    S(StrLifeColWithdrawn, 20669, "Withdrwn") \
    S(StrLifeColExposed, 20670, "Exposed ") \
    S(StrLifeColDying, 20671, "Dying   ") \
    S(StrLifeColProportion, 20672, "Proportn") \
    S(StrLifeColDead, 20673, "Dead    ") \
    S(StrLifeColSurviving, 20674, "Survivng") \
    S(StrLifeColCumulative, 20675, "Cum.Prop") \
    S(StrLifeColProbability, 20676, "Problty ") \
    S(StrLifeColDensity, 20677, "Density ") \
    S(StrLifeColHazard, 20678, "Hazard  ") \
    S(StrLifeColRate, 20679, "Rate    ") \
    S(StrLifeColError, 20680, "Std.Err.") \
    S(StrLifeColErrorSurviving, 20681, "Cum.Surv") \
    S(StrLifeColErrorDensity, 20682, "Prob.Den") \
    S(StrLifeColErrorHazard, 20683, "Haz.Rate") \
    S(StrLifeColMedian, 20684, "Median  ") \
    S(StrLifeColExpectancy, 20685, "Life Exp") \
    S(StrLifeColMark, 20686, "Beyond") \
    S(StrLifeMarkNote, 20687, \
      "Note: + marks a median life expectancy that is only known to be longer: survival stays above half to the last " \
      "interval.") \
    S(StrLifeLogLikelihood, 20688, "Log-Likelihood for data: ") \
    S(StrLifeCorrectedNote, 20689, \
      "Note: An interval without a death is given half a death, one that nobody survives half a survivor.") \
    S(StrLifeInFullNumber, 20690, "Interval number") \
    S(StrLifeInFullProportionDead, 20691, "Proportion dead") \
    S(StrLifeInFullProportionSurviving, 20692, "Proportion surviving") \
    S(StrLifeInFullCumulative, 20693, "Cumulative proportion surviving") \
    S(StrLifeInFullDensity, 20694, "Probability density") \
    S(StrLifeInFullErrorSurviving, 20695, "Standard error of cumulative proportion surviving") \
    S(StrLifeInFullErrorDensity, 20696, "Standard error of probability density") \
    S(StrLifeInFullErrorHazard, 20697, "Standard error of hazard rate") \
    S(StrLifeInFullMedian, 20698, "Median life expectancy") \
    S(StrLifeInFullErrorMedian, 20699, "Standard error of median life expectancy") \
    S(StrLifeInFullWithdrawn, 20700, "Number withdrawn") \
    S(StrLifeExponential, 20710, "Exponential  ") \
    S(StrLifeLinearHazard, 20711, "Linear Hazard") \
    S(StrLifeGompertz, 20712, "Gompertz     ") \
    S(StrLifeWeibull, 20713, "Weibull      ") \
    S(StrLifeParameters, 20714, "Parameter Estimates, Model: ") \
    S(StrLifeColEstimation, 20715, "Estimatn") \
    S(StrLifeColMethod, 20716, "Method  ") \
    S(StrLifeColLambda, 20717, "Lambda  ") \
    S(StrLifeColVariance, 20718, "Variance") \
    S(StrLifeColGamma, 20719, "Gamma   ") \
    S(StrLifeColCovariance, 20720, "Covarnce") \
    S(StrLifeColGammaLambda, 20721, "Gam-Lamd") \
    S(StrLifeColLog, 20722, "Log-    ") \
    S(StrLifeColLikelihood, 20723, "Likelhd.") \
    S(StrLifeColChiSquare, 20724, "Chi-Sqr.") \
    S(StrLifeColDf, 20725, "   df   ") \
    S(StrLifeColP, 20726, "  p     ") \
    S(StrLifeWeightsNote, 20727, "Note: Weights: 1=1., 2=1./V, 3=N(I)*H(I)") \
    S(StrLifeInFullMethod, 20728, "Estimation method (weights)") \
    S(StrLifeInFullVariance, 20729, "Variance of %1") \
    S(StrLifeInFullError, 20730, "Standard error of %1") \
    S(StrLifeInFullCovariance, 20731, "Covariance of Gamma and Lambda") \
    S(StrLifeInFullLikelihood, 20732, "Log-likelihood") \
    S(StrLifeInFullChiSquare, 20733, "Chi-square") \
    S(StrLifeHazardFunction, 20740, "Estimates of Hazard Function, Model: ") \
    S(StrLifeSurvivalFunction, 20741, "Estimates of Survival Function; Model:     ") \
    S(StrLifeDensityFunction, 20742, "Estimates of Prob. Density Function; Model: ") \
    S(StrLifeColWeight, 20743, "Weight") \
    S(StrLifePlotHazard, 20744, "LS Estimates of Hazard Function") \
    S(StrLifePlotSurvival, 20745, "LS Estimates of Survival Function    ") \
    S(StrLifePlotDensity, 20746, "LS Estimates of Probability Density") \
    S(StrLifePlotModel, 20747, "Model: ") \
    S(StrLifeAxisStart, 20748, "Interval Start") \
    S(StrLifeAxisHazard, 20749, "Hazard     ") \
    S(StrLifeAxisSurviving, 20750, "Cumulative Proportion Surviving") \
    S(StrLifeAxisDensity, 20751, "Probability Density") \
    S(StrLifeObservedHazard, 20752, "Observed Hazard Rates") \
    S(StrLifeObservedSurvival, 20753, "Observed Survival Function    ") \
    S(StrLifeObservedDensity, 20754, "Observed Probability Density") \
    S(StrLifeObserved, 20755, "Observed") \
    S(StrLifeMidpointNote, 20756, \
      "Hazard and density are those of the middle of an interval, drawn at its start.") \
    S(StrLifeLeftOutNote, 20757, "Not drawn: %1.") \
    S(StrLifeAllModels, 20758, "Fitted Survival Functions, Weight %1") \
    S(StrLifeFitName, 20759, "%1, weight %2") \
    S(StrLifeWeight1, 20760, "Weight 1") \
    S(StrLifeWeight2, 20761, "Weight 2") \
    S(StrLifeWeight3, 20762, "Weight 3") \
    S(StrLifeRanking, 20770, "Ranking of the Fits by Akaike's Criterion") \
    S(StrLifeColRank, 20771, "Rank") \
    S(StrLifeColModel, 20772, "Model") \
    S(StrLifeColAkaike, 20773, "AIC") \
    S(StrLifeColAdequate, 20774, "Adequate") \
    S(StrLifeColWhy, 20775, "Why not") \
    S(StrLifeAdequate, 20776, "yes") \
    S(StrLifeNotAdequate, 20777, "no") \
    S(StrLifeInFullAkaike, 20778, "Akaike's criterion") \
    S(StrLifeRankingNote, 20779, \
      "Note: AIC = 2 k - 2 log-likelihood, with k the number of parameters; the smallest is best. A small p says that " \
      "the model does not fit.") \
    S(StrLifeWhyNegativeLambda, 20780, "Lambda is negative") \
    S(StrLifeWhyNegativeHazard, 20781, "the hazard is negative at %1") \
    S(StrLifeWhySurvivalAboveOne, 20782, "survival is above 1 at %1") \
    S(StrLifeWhyNobodyLeft, 20783, "survival is 0 at %1") \
    S(StrLifeWhyWeibullHazard, 20784, "the Weibull fit of the same weights has no hazard") \
    S(StrLifeWhyNoLogarithm, 20785, "the logarithm of an interval's middle does not exist") \
    S(StrLifeWhyNoVariance, 20786, "the hazard of the interval from %1 has no variance") \
    S(StrLifeWhyStopped, 20787, "the fitting stopped before it: %1, %2") \
    S(StrLifeWhyIntercept, 20788, "the log-linear intercept is beyond 600") \
    S(StrLifeWhyLargeLambda, 20789, "Lambda is beyond 1e15") \
    S(StrLifeWhyExponent, 20790, "an exponent is beyond 70 at %1") \
    S(StrLifeWhyGammaZero, 20791, "Gamma is 0") \
    S(StrLifeWhyStoppedAll, 20792, "No model can be fitted: %1.") \
    S(StrLifeInadequateFit, 20793, "%1: %2.") \
    S(StrLifeStoppedAt, 20794, "The fitting stopped at %1: %2. Parameters and curves computed before are kept; no fit has a likelihood.") \
    S(StrLifeWhyOneInterval, 20795, "a line needs two closed intervals") \
    S(StrLifeWhyNotComputed, 20796, "its likelihood cannot be computed") \
    S(StrLifeQuantiles, 20800, "Survival Times by Proportion Surviving") \
    S(StrLifeSurvivalAtTimes, 20801, "Survival at Given Times") \
    S(StrLifeColSurvivalTime, 20802, "Survival") \
    S(StrLifeColTime, 20803, "Time    ") \
    S(StrLifeColEstimate, 20804, "Estimate") \
    S(StrLifeLevelLower, 20805, "% lower") \
    S(StrLifeLevelUpper, 20806, "% upper") \
    S(StrLifeQuantilesNote, 20807, \
      "Note: Limits are those of the delta method for the logarithm of the time. Empty: the fitted survival does not " \
      "fall that far.") \
    S(StrLifeAtTimesNote, 20808, \
      "Note: Limits are those of the delta method for the logarithm of the cumulative hazard. Empty: the fitted " \
      "hazard is negative there, or survival above 1.") \
    S(StrLifeColProportionSurviving, 20809, "Surviving")
// clang-format on

namespace ozm::survival {

OZM_STRINGS(lifeTableStrings, OZM_LIFE_TABLE_STRINGS);

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
    OutputMember("RankingOfFits", LifeRanking, "Ranking of all fits by Akaike's criterion"),
    {"Weighting", MemberKind::Property, MemberType::Integer, LifeWeighting,
     "The weights (1, 2 or 3) of the fits in the plot of all models"},
    OutputMember("PlotOfAllModels", LifePlotModels,
                 "Plot of the survival functions of all models beside the observed one"),
    {"ProportionsSurviving", MemberKind::Property, MemberType::Text, LifeProportions,
     "The proportions surviving for which survival times are estimated, separated by blanks or commas"},
    OutputMember("SurvivalTimes", LifeQuantiles,
                 "Survival times by proportion surviving, of each adequate fit"),
    {"Times", MemberKind::Property, MemberType::Text, LifeTimes,
     "The times at which survival is estimated, separated by blanks or commas"},
    OutputMember("SurvivalAtTimes", LifeAtTimes, "Survival at given times, of each adequate fit"),
    {"ConfidenceLevel", MemberKind::Property, MemberType::Real, LifeLevel,
     "Confidence level of the limits, between 0 and 1"},
};
inline constexpr AutomationInterface lifeResultsInterface{"SurLifeTableResults", "CLifeResultsDlg",
                                                          "Survival Analysis life tables results dialog",
                                                          lifeResultsMembers};

} // namespace ozm::survival
