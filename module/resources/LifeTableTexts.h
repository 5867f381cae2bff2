#pragma once

#include "module/resources/StringList.h"

// The texts of life tables and fitted survival distributions.

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

} // namespace ozm::survival
