#pragma once

#include "module/resources/StringList.h"

// Texts of the results of the exponential, lognormal and normal regression.

// clang-format off
#define OZM_PARAMETRIC_RESULT_STRINGS(S) \
    S(StrParExponentialTitle, 21400, "Exponential Regression Results") \
    S(StrParLognormalTitle, 21401, "Lognormal Regression Results") \
    S(StrParNormalTitle, 21402, "Normal Regression Results") \
    S(StrParExponentialModel, 21403, "Model:   mean survival time = exp(Constant + sum of Beta times variable)") \
    S(StrParLognormalModel, 21404, "Model:   log survival time is normal about Constant + sum of Beta times variable") \
    S(StrParNormalModel, 21405, "Model:   survival time is normal about Constant + sum of Beta times variable") \
    S(StrParScaleTime, 21406, "These log-likelihoods are on the scale of time (of the survival times).") \
    S(StrParScaleLogTime, 21407, "These log-likelihoods are on the scale of log time (of the log survival times).") \
    S(StrParLikelihoodTime, 21408, "Log-Likelihood of final solution, on the scale of time:   ") \
    S(StrParLikelihoodLogTime, 21409, "Log-Likelihood of final solution, on the scale of log time:   ") \
    S(StrParAkaike, 21410, "Akaike's criterion (on the scale of time):   ") \
    S(StrParParameters, 21411, "Number of parameters:   ") \
    S(StrParRowTime, 21412, "Log-likelihood of final solution, scale of time") \
    S(StrParRowLogTime, 21413, "Log-likelihood of final solution, scale of log time") \
    S(StrParRowAkaike, 21414, "Akaike's criterion, scale of time") \
    S(StrParRowParameters, 21415, "Number of parameters") \
    S(StrParNoteMean, 21416, \
      "exp(Beta) is a ratio of survival times: the factor by which the mean survival time changes when the variable " \
      "is greater by 1 and the others are the same. Above 1 the event comes later, below 1 earlier. The hazard ratio " \
      "is its inverse, exp(-Beta).") \
    S(StrParNoteMedian, 21417, \
      "exp(Beta) is a ratio of survival times: the factor by which the median survival time changes when the variable " \
      "is greater by 1 and the others are the same. Above 1 the event comes later, below 1 earlier. Hazards are not " \
      "proportional in this model.") \
    S(StrParNoteConstant, 21418, \
      "The constant is the log of the mean survival time where all variables are 0.") \
    S(StrParNoteSigmaLog, 21419, \
      "The constant is the mean of the log survival time where all variables are 0, and Sigma its standard deviation " \
      "about the mean by the variables. Sigma is above 0: its limits are those of its logarithm, and it has no test.") \
    S(StrParNoteSigma, 21420, \
      "Beta is the change of the mean survival time when the variable is greater by 1 and the others are the same. The " \
      "constant is the mean where all variables are 0, and Sigma the standard deviation about the mean by the variables. " \
      "Sigma is above 0: its limits are those of its logarithm, and it has no test.") \
    S(StrParNoteSmallSteps, 21421, \
      "The iteration ended when no parameter, Sigma included, changed by more than the convergence criterion, %1. Small " \
      "steps may stop before the maximum, where the gradient is 0.") \
    S(StrParNoteCovariance, 21422, \
      "The covariances are the inverse of the information at the estimates.") \
    S(StrParNoteObserved, 21423, \
      "The covariances are the inverse of the observed information of the censored data at the estimates, Sigma " \
      "included.") \
    S(StrParNoteAkaike, 21424, \
      "Akaike's criterion is twice the number of parameters less twice the log-likelihood on the scale of time; the " \
      "smaller, the better. On the scale of log time the log-likelihood is greater by the sum of the log uncensored " \
      "times; programs differ in the scale that they show.") \
    S(StrParNoteAkaikeTime, 21425, \
      "Akaike's criterion is twice the number of parameters less twice the log-likelihood; the smaller, the better.") \
    S(StrParCoxSnellTitle, 21426, "Cox-Snell Residuals vs. their Cumulative Hazard") \
    S(StrParNormalPlotTitle, 21427, "Normal Probability Plot of Standardised Residuals") \
    S(StrParCoxSnellVsTitle, 21428, "Cox-Snell Residuals vs. Linear Predictor") \
    S(StrParStandardisedVsTitle, 21429, "Standardised Residuals vs. Linear Predictor") \
    S(StrParAxisCoxSnell, 21430, "Cox-Snell Residual") \
    S(StrParAxisHazard, 21431, "Estimated Cumulative Hazard (Nelson)") \
    S(StrParAxisStandardised, 21432, "Standardised Residual") \
    S(StrParAxisNormal, 21433, "Expected Normal Value (by Product-Limit Estimate)") \
    S(StrParAxisMeanLog, 21434, "Linear Predictor (Log of the Mean Survival Time)") \
    S(StrParAxisLocationLog, 21435, "Linear Predictor (Mean of the Log Survival Time)") \
    S(StrParAxisLocation, 21436, "Linear Predictor (Mean Survival Time)") \
    S(StrParLegendModel, 21437, "If the model holds") \
    S(StrParLegendFitted, 21438, "Fitted") \
    S(StrParLegendKaplan, 21439, "Kaplan-Meier (all cases)") \
    S(StrParNoteCoxSnell, 21440, \
      "A Cox-Snell residual is the cumulative hazard of a case by the model at its time: a sample, censored as the times " \
      "are, of the exponential distribution with mean 1.") \
    S(StrParNoteCoxSnellPlot, 21441, \
      "One point per value of an uncensored case; censored ones count in the estimate. A course away from the line says " \
      "that the hazard is not constant in time, or depends otherwise on the variables.") \
    S(StrParNoteStandardised, 21442, \
      "A standardised residual is the %1 less the linear predictor, over Sigma; of a censored case the value is at " \
      "least that.") \
    S(StrParTimeInWords, 21443, "survival time") \
    S(StrParLogTimeInWords, 21444, "log survival time") \
    S(StrParNoteNormalPlot, 21445, \
      "One point per value of an uncensored case, halfway down the step of the product-limit estimate, in which censored " \
      "ones count.") \
    S(StrParNotePattern, 21446, \
      "Where the model holds the points lie about alike at every linear predictor.") \
    S(StrParTableTitle, 21447, "Kaplan-Meier Estimate and Fitted Survival") \
    S(StrParColKaplan1, 21448, "Kaplan-") \
    S(StrParColKaplan2, 21449, "Meier") \
    S(StrParKaplanInFull, 21450, "Kaplan-Meier estimate of survival") \
    S(StrParColKaplanError2, 21451, "K-M Err.") \
    S(StrParKaplanErrorInFull, 21452, "Standard error of the Kaplan-Meier estimate") \
    S(StrParColFitted1, 21453, "Fitted") \
    S(StrParFittedInFull, 21454, "Fitted survival") \
    S(StrParFittedErrorInFull, 21455, "Standard error of the fitted survival") \
    S(StrParNoteTable, 21456, \
      "The Kaplan-Meier estimate is of all cases, the fitted survival that of somebody whose covariates are the means.") \
    S(StrParNoteUserTable, 21457, \
      "Survival of somebody with these covariates by the model, at the times of events. Limits are those of log(-log).") \
    S(StrParQuartilesTitle, 21458, "Survival Times at Given Values") \
    S(StrParColShare1, 21459, "Share") \
    S(StrParSurvivingInFull, 21460, "Share that survives the time") \
    S(StrParTimeErrorInFull, 21461, "Standard error of the time") \
    S(StrParTimeInFull, 21462, "Survival time") \
    S(StrParRowLower, 21463, "Lower quartile") \
    S(StrParRowMedian, 21464, "Median") \
    S(StrParRowUpper, 21465, "Upper quartile") \
    S(StrParNoteTimesLog, 21466, \
      "Standard errors and limits by the delta method; the limits are those of the log time.") \
    S(StrParNoteTimes, 21467, \
      "Standard errors and limits by the delta method; the limits are those of the time itself.") \
    S(StrParNoteBeyond, 21468, "Times above %1, the largest of the data, rest on the model alone.") \
    S(StrParNoteNegative, 21469, \
      "A time below 0 says that the normal model does not fit here: it has no bound at 0, as times have.") \
    S(StrParNoteBelowZero, 21470, \
      "By the normal model %1% fail before time 0: it has no bound there, as times have.") \
    S(StrParColStandardised1, 21471, "Standrd.") \
    S(StrParStandardisedInFull, 21472, "Standardised residual") \
    S(StrParColCoxSnell1, 21473, "CoxSnell") \
    S(StrParCoxSnellInFull, 21474, "Cox-Snell residual") \
    S(StrParColEstimate1, 21475, "Prod.-L.") \
    S(StrParColOfResiduals2, 21476, "of Resid") \
    S(StrParEstimateInFull, 21477, "Product-limit estimate of the residuals") \
    S(StrParColNelson1, 21478, "Hazard") \
    S(StrParNelsonInFull, 21479, "Nelson's cumulative hazard of the residuals") \
    S(StrParNotePredictor, 21480, "The linear predictor is the constant and the sum of Beta times the covariate.") \
    S(StrParNoteMartingale, 21481, \
      "A martingale residual is 1 for an event, 0 for a censored case, less the Cox-Snell residual; a deviance residual " \
      "is the same made symmetric.") \
    S(StrParForestTitle, 21482, "Ratios of Survival Times with %1% Limits") \
    S(StrParAxisRatio, 21483, "Ratio of Survival Times, exp(Beta), on a Logarithmic Scale") \
    S(StrParLegendRatio, 21484, "Ratio of survival times") \
    S(StrParNoteForest, 21485, \
      "A ratio is per 1 unit of its variable: above 1 the event comes later. Limits that reach across 1 are compatible " \
      "with no effect.") \
    S(StrParNoRatio, 21486, "No ratio of survival times has limits that can be drawn.") \
    S(StrParComparisonTitle, 21487, "Comparison of Parametric Models") \
    S(StrParColLikelihood2, 21488, "(Time)") \
    S(StrParComparedInFull, 21489, "Log-likelihood on the scale of time") \
    S(StrParColParameters, 21490, "Params.") \
    S(StrParColAkaike1, 21491, "Akaike's") \
    S(StrParColAkaike2, 21492, "Crit.") \
    S(StrParAkaikeInFull, 21493, "Akaike's criterion") \
    S(StrParColDifference1, 21494, "Less the") \
    S(StrParColDifference2, 21495, "Best") \
    S(StrParDifferenceInFull, 21496, "Akaike's criterion less that of the best model") \
    S(StrParNoteComparison, 21497, \
      "The same cases for all models. Akaike's criterion is twice the number of parameters less twice the log-likelihood; " \
      "the smallest is the best, and differences below 2 say little. Chi-square is against the model's own null model.") \
    S(StrParNoteOffMaximum, 21498, \
      "Not at the maximum to three digits: %1. The log-likelihoods there may be higher; a smaller convergence " \
      "criterion brings them closer.") \
    S(StrParColNotFitted, 21499, "Not fitted, as")
// clang-format on

namespace ozm::survival {

OZM_STRINGS(parametricResultStrings, OZM_PARAMETRIC_RESULT_STRINGS);

} // namespace ozm::survival
