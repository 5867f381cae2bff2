#pragma once

#include "module/resources/StringList.h"

// Texts of the results of regression models. "Beta" is the coefficient of a covariate.

// clang-format off
#define OZM_REGRESSION_RESULT_STRINGS(S) \
    S(StrRegOutCox, 20902, "Proportional Hazards (Cox) Regression Results") \
    S(StrRegTimes, 20903, "Survival times:   ") \
    S(StrRegCensoring, 20904, "Variable with censoring indicator:   ") \
    S(StrRegCovariates, 20905, "Independent variables (%1):   ") \
    S(StrRegValid, 20906, "Total number of valid observations:   ") \
    S(StrRegUncensored, 20907, "uncensored:   ") \
    S(StrRegCensored, 20908, "censored:   ") \
    S(StrRegPercent, 20909, " (%1%)") \
    S(StrRegLeftOut, 20910, "Cases left out:   ") \
    S(StrRegMissingLeftOut, 20911, "Left out as a value is missing:   ") \
    S(StrRegReplaced, 20912, "Missing values, replaced by the variable's mean:   ") \
    S(StrRegTies, 20913, "Tied survival times:   Breslow's method") \
    S(StrRegStratified, 20914, "Stratified by ") \
    S(StrRegSameBeta, 20915, " (same beta, different h0)  No. grps: ") \
    S(StrRegCriterion, 20916, "Convergence criterion:   ") \
    S(StrRegIterations, 20917, "Iterations:   ") \
    S(StrRegFinal, 20918, "Log-Likelihood of final solution:   ") \
    S(StrRegNull, 20919, "Log-Likelihood of Null model (all beta s=0):   ") \
    S(StrRegChiSquare, 20920, "Chi-Square (Null model - final solution):   ") \
    S(StrRegScore, 20921, "Score test, Chi-Square:   ") \
    S(StrRegWald, 20922, "Wald test, Chi-Square:   ") \
    S(StrRegDfAndP, 20923, "   df = %1   p = %2") \
    S(StrRegConcordance, 20924, "Harrell's concordance:   ") \
    S(StrRegConcordanceError, 20925, "Standard error of concordance:   ") \
    S(StrRegGradient, 20926, "Largest element of the gradient at the end:   ") \
    S(StrRegGradientOf, 20927, " (%1)") \
    S(StrRegNotComputed, 20928, "cannot be computed") \
    S(StrRegStratum, 20930, "   stratum ") \
    S(StrRegStratumCases, 20931, ": %1 valid, %2 uncensored") \
    S(StrRegTestsTitle, 20932, "Tests of the Model") \
    S(StrRegRowLikelihood, 20933, "Likelihood ratio (null model - final solution)") \
    S(StrRegRowScore, 20934, "Score test") \
    S(StrRegRowWald, 20935, "Wald test") \
    S(StrRegFitTitle, 20936, "Fit of the Model") \
    S(StrRegColValue, 20937, "Value") \
    S(StrRegColChiSquare, 20938, "Chi-sqr.") \
    S(StrRegChiSquareInFull, 20939, "Chi-square") \
    S(StrRegColDf, 20940, "df") \
    S(StrRegColP, 20941, "p") \
    S(StrRegRowValid, 20942, "Valid observations") \
    S(StrRegRowUncensored, 20943, "Uncensored") \
    S(StrRegRowCensored, 20944, "Censored") \
    S(StrRegRowLeftOut, 20945, "Cases left out") \
    S(StrRegRowStrata, 20946, "Strata") \
    S(StrRegRowFinal, 20947, "Log-likelihood of final solution") \
    S(StrRegRowNull, 20948, "Log-likelihood of null model") \
    S(StrRegRowIterations, 20949, "Iterations") \
    S(StrRegRowCriterion, 20950, "Convergence criterion") \
    S(StrRegRowGradient, 20951, "Largest element of the gradient") \
    S(StrRegRowConcordance, 20952, "Harrell's concordance") \
    S(StrRegRowConcordanceError, 20953, "Standard error of concordance") \
    S(StrRegParametersTitle, 20954, "Parameter Estimates") \
    S(StrRegColBeta, 20955, "Beta") \
    S(StrRegColError1, 20956, "Standard") \
    S(StrRegColError2, 20957, "Error") \
    S(StrRegColT, 20958, "t-value") \
    S(StrRegColExp1, 20959, "exp(beta)") \
    S(StrRegColLower, 20960, "% lower") \
    S(StrRegColUpper, 20961, "% upper") \
    S(StrRegColWald1, 20962, "Wald") \
    S(StrRegColWald2, 20963, "Statist.") \
    S(StrRegWaldInFull, 20964, "Wald statistic") \
    S(StrRegColGradient, 20965, "Gradient") \
    S(StrRegLowerInFull, 20966, "Lower %1% limit of %2") \
    S(StrRegUpperInFull, 20967, "Upper %1% limit of %2") \
    S(StrRegNoteExp, 20968, \
      "exp(Beta) is the hazard ratio: the factor by which the hazard, the risk of the event per unit of time, " \
      "changes when the variable is greater by 1 and the others are the same. Above 1 the event comes earlier, " \
      "below 1 later.") \
    S(StrRegNoteWald, 20969, \
      "t = Beta / standard error; the Wald statistic is its square, and p its chi-square probability (df = 1).") \
    S(StrRegNoteCriterion, 20970, \
      "The iteration ended when the estimates changed by less than the convergence criterion, %1, in proportion " \
      "to their size. They may be that far from the maximum, where the gradient is 0.") \
    S(StrRegNoteCovariance, 20971, \
      "The covariances are the inverse of the information at the start of the last iteration: with a smaller " \
      "criterion they come closer to those at the maximum.") \
    S(StrRegNoteEmpty, 20972, "An empty cell (--) is a number too large or too small to be represented.") \
    S(StrRegNoteSingular, 20973, \
      "A test is left empty when the matrix that it needs is singular.") \
    S(StrRegCovariancesTitle, 20975, "Covariances of Parameter Estimates") \
    S(StrRegCorrelationsTitle, 20976, "Correlations of Parameter Estimates") \
    S(StrRegMeansTitle, 20977, "Means and Standard Deviations") \
    S(StrRegColMean, 20978, "Mean") \
    S(StrRegColDeviation1, 20979, "Standard") \
    S(StrRegColDeviation2, 20980, "Dev.") \
    S(StrRegDeviationInFull, 20981, "Standard deviation") \
    S(StrRegColValues, 20982, "Values") \
    S(StrRegColMissing, 20983, "Missing") \
    S(StrRegNoteReplaced, 20984, \
      "Missing values were replaced by the mean of the others; the number of values counts them, and the standard " \
      "deviation is of all.") \
    S(StrRegNoteLeftOut, 20985, \
      "A case with a missing value was left out; the missing values of a variable are counted over the cases " \
      "that are valid otherwise.") \
    S(StrRegNotStratified, 20986, \
      "The analysis is not stratified: select a stratification variable.") \
    S(StrRegStrataTitle, 20987, "Stratified Analysis: Strata Fitted Alone") \
    S(StrRegStrataTestTitle, 20988, "Stratified Analysis: Test of Equal Coefficients") \
    S(StrRegStrataParametersTitle, 20989, "Stratified Analysis: Parameter Estimates by Stratum") \
    S(StrRegColStratum, 20990, "Stratum") \
    S(StrRegColLabel, 20991, "Label") \
    S(StrRegColValid, 20992, "Valid") \
    S(StrRegColUncensored1, 20993, "Un-") \
    S(StrRegColUncensored2, 20994, "censored") \
    S(StrRegUncensoredInFull, 20995, "Uncensored") \
    S(StrRegColLikelihood1, 20996, "Log-") \
    S(StrRegColLikelihood2, 20997, "Likelhd.") \
    S(StrRegLikelihoodInFull, 20998, "Log-likelihood") \
    S(StrRegColIterations, 20999, "Iteratns") \
    S(StrRegIterationsInFull, 21000, "Iterations") \
    S(StrRegColWhyNot, 21001, "Not fitted, as") \
    S(StrRegRowEqual, 21002, "Equal coefficients") \
    S(StrRegColSum1, 21003, "Sum of") \
    S(StrRegColSum2, 21004, "Strata") \
    S(StrRegSumInFull, 21005, "Sum of the strata's log-likelihoods") \
    S(StrRegColCommon1, 21006, "Common") \
    S(StrRegColCommon2, 21007, "Fit") \
    S(StrRegCommonInFull, 21008, "Log-likelihood with equal coefficients") \
    S(StrRegNoteStrataTest, 21009, \
      "Chi-square is twice the difference between the sum of the strata, each fitted alone, and the common fit " \
      "with equal coefficients. A small p says that coefficients differ between strata.") \
    S(StrRegNoteNoStrataTest, 21010, \
      "No test, as not every stratum could be fitted alone; see the table of the strata. With the codes of the others " \
      "alone as strata there is one among them.") \
    S(StrRegNoteOneStratum, 21011, "No test, as there is only one stratum.") \
    S(StrRegWhyNoEvents, 21012, "it has no uncensored case") \
    S(StrRegWhyNoVariability, 21013, "%1 does not vary in it") \
    S(StrRegWhySingular, 21014, "its parameter covariance matrix is singular") \
    S(StrRegWhyNotConverged, 21015, "there was no convergence in %1 iterations") \
    S(StrRegWhyNoLikelihood, 21016, "its likelihood cannot be computed") \
    S(StrRegColVariable, 21017, "Variable") \
    S(StrRegNotOfModel, 21018, "This model has no such output.") \
    S(StrRegFitting, 21019, "Computing...") \
    S(StrRegAxisTime, 21020, "Survival Time") \
    S(StrRegValuesHint, 21021, \
      "Values of the covariates for the user-defined plot, in their order; a point is the mean") \
    S(StrRegPlotName1, 21022, "Plot 1:   %1") \
    S(StrRegPlotName2, 21023, "Plot 2:   %1") \
    S(StrRegPlotName3, 21024, "Plot 3:   %1") \
    S(StrRegWhyUnbounded, 21025, "the estimates of %1 grow without bound") \
    S(StrRegFar, 21026, "Not at the maximum to three digits:   ") \
    S(StrRegNoteFar, 21027, \
      "As the gradient says, the maximum is not reached to three digits by %1.") \
    S(StrRegOnlyOf, 21028, "It is an output of %1, and not of %2.") \
    S(StrRegNoteCloser, 21029, " A smaller criterion brings them closer.") \
    S(StrRegNoteUnits, 21030, " Units in which the estimates are larger numbers bring them closer to it.") \
    S(StrRegNoteMissing, 21031, "An empty cell (--) cannot be computed, as it rests on a number that is missing.") \
    S(StrRegSurvivalTitle, 21300, "Survival Function at the Means of the Covariates") \
    S(StrRegUserTitle, 21303, "Survival Function at Given Values of the Covariates") \
    S(StrRegAxisSurviving, 21304, "Cumulative Proportion Surviving") \
    S(StrRegResidualsTitle, 21313, "Residuals") \
    S(StrRegColCase1, 21314, "Case") \
    S(StrRegColCaseNumber, 21315, "Number") \
    S(StrRegColTime1, 21316, "Survival") \
    S(StrRegColTime2, 21317, "Time") \
    S(StrRegColCensored, 21318, "Censored") \
    S(StrRegColPredictor1, 21319, "Linear") \
    S(StrRegColPredictor2, 21320, "Predictr") \
    S(StrRegPredictorInFull, 21321, "Linear predictor") \
    S(StrRegColMartingale1, 21322, "Martngl.") \
    S(StrRegColResidual2, 21323, "Residual") \
    S(StrRegMartingaleInFull, 21324, "Martingale residual") \
    S(StrRegColDeviance1, 21325, "Deviance") \
    S(StrRegNoteCensored, 21326, "Note: Censored cases are marked with +") \
    S(StrRegUserTableTitle, 21329, "Survival at Given Values of the Covariates") \
    S(StrRegColAtRisk1, 21330, "Number") \
    S(StrRegColAtRisk2, 21331, "at Risk") \
    S(StrRegColEvents, 21332, "Events") \
    S(StrRegColCumulative1, 21333, "Cumulatv") \
    S(StrRegColSurvival2, 21338, "Survival") \
    S(StrRegSurvivalInFull, 21339, "Cumulative survival") \
    S(StrRegNoteValues, 21344, "Values of the covariates: %1.") \
    S(StrRegValueOf, 21345, "%1 = %2") \
    S(StrRegNoteMeans, 21346, "All covariates have their means.") \
    S(StrRegTooManyValues, 21348, "There are more values than covariates.") \
    S(StrRegValuesFor, 21349, "Values that are given: %1; covariates: %2 (%3).") \
    S(StrRegValuesTooFar, 21350, \
      "The survival function cannot be computed at these values: they are too far from the data.") \
    S(StrRegLegendEstimate, 21351, "Survival") \
    S(StrRegLegendLimits, 21372, "%1% limits") \
    S(StrRegLegendNoEffect, 21373, "No effect") \
    S(StrRegNoteForestOut, 21375, "Left out, as the limits are beyond any scale: %1.") \
    S(StrRegNoteSurvivalMeans, 21378, \
      "The survival of somebody whose covariates are the means, not the average survival of the cases.") \
    S(StrRegLegendEvents, 21380, "Uncensored") \
    S(StrRegLegendCensored, 21381, "Censored") \
    S(StrRegNoteSomeValues, 21383, "Values of the covariates: %1; the others have their means.")
// clang-format on

namespace ozm::survival {

OZM_STRINGS(regressionResultStrings, OZM_REGRESSION_RESULT_STRINGS);

} // namespace ozm::survival
