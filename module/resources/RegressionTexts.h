#pragma once

#include "module/resources/StringList.h"

// The texts of the regression models' specification and estimation.

// clang-format off
#define OZM_REGRESSION_STRINGS(S) \
    S(StrRegTooManyPoints, 21100, \
      "Too many valid datapoints; max no. cases=32000, maximum no. data points=16000.") \
    S(StrRegFewValues, 21101, "At least one indep. variable with fewer than 2 valid cases.") \
    S(StrRegNoUncensored, 21102, "Not enough valid uncensored cases to perform analysis.") \
    S(StrRegConstantCovariate, 21103, "One of the independent variables has no variability.") \
    S(StrRegConstantTimes, 21104, "The dependent variable (survival times) has no variability.") \
    S(StrRegTooFewValid, 21105, "Fewer than two valid cases.") \
    S(StrRegTooFewUncensored, 21106, \
      "Fewer than 2 uncensored cases; cannot reliably estimate parameters.") \
    S(StrRegTooManyParameters, 21107, \
      "Not enough uncensored cases; cannot estimate model parameters") \
    S(StrRegSingular, 21108, \
      "Singular parameter covariance matrix; cannot estimate parameters.") \
    S(StrRegMoreIterations, 21109, \
      " Exceeded maximum number of iterations; 30 more iterations? ") \
    S(StrRegNoLikelihood, 21110, \
      "Cannot compute likelihood for current parameters; try different start values.") \
    S(StrRegInvalidOperation, 21111, \
      "An invalid numerical operation was encountered during the computation of the model likelihood; check the " \
      "expressions for the time-dependent covariates and make sure that no divisions by zero, negative square " \
      "roots, etc. will occur.") \
    S(StrRegNoMemory, 21112, \
      "Not enough memory or too many valid cases; close other applications.") \
    S(StrRegBadCriterion, 21113, \
      "Invalid value for convergence criterion; min = 0.00001, max < 1.") \
    S(StrRegBadIterations, 21114, "Invalid max. number of iterations; min = 3, max = 100.") \
    S(StrRegNotConverged, 21115, "The iteration did not converge.") \
    S(StrRegComputing, 21116, "Computing...") \
    S(StrRegManyPoints1500, 21117, \
      "Too many valid datapoints; max no. cases=1500, maximum no. datapoints=5300.") \
    S(StrRegTooFewForModel, 21118, "Not enough uncensored cases; cannot estimate model parameters. ") \
    S(StrRegTooManyIterations, 21119, "Too many iterations; increase no. of iterations") \
    S(StrRegCox, 21120, "Proportional hazard (Cox) regression") \
    S(StrRegExponential, 21121, "Exponential regression") \
    S(StrRegLognormal, 21122, "Lognormal regression") \
    S(StrRegNormal, 21123, "Normal regression") \
    S(StrRegTimeDependent, 21124, "Prop. hazard (Cox) /w time-dep. covariates") \
    S(StrRegCasewise, 21125, "Casewise &deletion of missing data") \
    S(StrRegSubstitution, 21126, "&Mean substitution of missing data") \
    S(StrRegEmError, 21127, "Error in EM estimation procedure; error code: ") \
    S(StrRegNoNullModel, 21128, \
      "Cannot estimate null model; increase no. of iterations or lower threshold.") \
    S(StrRegNoModelLikelihood, 21129, "Cannot compute log-likelihood for this model.") \
    S(StrRegIterationHeader, 21130, "Iteration  Log-Likelihood  Parameters     ") \
    S(StrRegFirstFive, 21131, "(for first 5 predictors)") \
    S(StrRegTimesInWords, 21132, "Survival times: %1") \
    S(StrRegCensoringInWords, 21133, "Censoring indicator: %1") \
    S(StrRegCovariatesInWords, 21134, "Covariates: %1") \
    S(StrRegStrataInWords, 21135, "Strata: %1") \
    S(StrRegParametersHeader, 21136, "Iteration                  Parameters     ") \
    S(StrRegComputingLikelihood, 21137, "Computing Log-Likelihood ... ") \
    S(StrRegEstimatingNull, 21138, "Estimating null model ... ") \
    S(StrRegConstant, 21139, "Constant") \
    S(StrRegNoCovariates, 21140, "Select the covariates: the independent variables of the regression.") \
    S(StrRegCovariateTwice, 21141, "A variable is selected twice.") \
    S(StrRegCovariateTwiceDetail, 21142, "%1 is both %2 and %3.") \
    S(StrRegACovariate, 21143, "a covariate") \
    S(StrRegAnotherCovariate, 21144, "another one") \
    S(StrRegTheStratification, 21145, "the stratification variable") \
    S(StrRegTheTime, 21146, "a time variable") \
    S(StrRegTheCensoring, 21147, "the censoring indicator") \
    S(StrRegBadStratum, 21148, "The codes of the stratification variable cannot be used.") \
    S(StrRegStratumTwice, 21149, "Code %1 is given twice.") \
    S(StrRegTooManyStrata, 21150, "%1 has more than %2 codes: choose those of fewer strata.") \
    S(StrRegStrataHint, 21151, \
      "Cases with any other code of the stratification variable are left out; none chosen: all codes") \
    S(StrRegStartHint, 21152, "One number per parameter, in their order; empty: the model's own start values") \
    S(StrRegBadStart, 21153, "The start values cannot be used.") \
    S(StrRegStartCount, 21154, "Numbers that are given: %1; parameters: %2 (%3).") \
    S(StrRegNoStart, 21155, "Parameter %1 has no number to start from.") \
    S(StrRegBadScale, 21156, "The values of a covariate are too large or too small to compute with.") \
    S(StrRegScaleDetail, 21157, "%1 goes from %2 to %3: express it in other units.") \
    S(StrRegBaselinesHint, 21158, \
      "Off: the output of the stratified analysis also has the coefficients of each stratum, fitted alone") \
    S(StrRegCapacity, 21160, \
      "A regression has room for 32,000 valid cases, copies of weighted cases counted: select fewer cases or use " \
      "smaller weights.") \
    S(StrRegValuesDetail, 21161, "Cases with a value of %1: %2, of %3 that are valid otherwise.") \
    S(StrRegConstantDetail, 21162, "%1 is %2 in all %3 valid cases.") \
    S(StrRegTimesDetail, 21163, "All %1 valid cases have the survival time %2.") \
    S(StrRegUncensoredDetail, 21164, "%1 of %2 valid cases is uncensored.") \
    S(StrRegParametersDetail, 21165, "There are %1 parameters and %2 uncensored cases.") \
    S(StrRegMissingDropped, 21166, \
      "Missing values, by covariate, of cases that are left out (casewise deletion): %1.") \
    S(StrRegMissingReplaced, 21167, "Means replace missing values, by covariate: %1.") \
    S(StrRegCountOf, 21168, "%1: %2") \
    S(StrRegNoCaseOfStratum, 21169, "No valid case has %1 of %2: such strata are not counted.") \
    S(StrRegDependent, 21170, \
      "%1 depends on the covariates before it (%2): leave one of them out.") \
    S(StrRegUnbounded, 21171, \
      "The coefficient of %1 grows without bound: at every uncensored time the case that fails has the %2 value of " \
      "all that are at risk. Its estimate and standard error mean nothing; the likelihood has no maximum.") \
    S(StrRegLargest, 21172, "largest") \
    S(StrRegSmallest, 21173, "smallest") \
    S(StrRegUnboundedTogether, 21174, \
      "The coefficients of %1 grow without bound together: at every uncensored time the case that fails has the " \
      "largest predictor of all that are at risk. The likelihood has no maximum.") \
    S(StrRegLastIterations, 21175, "Iterations: %1; the last of them:") \
    S(StrRegNotConvergedWay, 21176, \
      "Allow more iterations, choose a larger convergence criterion or other start values.") \
    S(StrRegNoVariation, 21177, \
      "%1 is the same in all cases that are at risk at the times of uncensored cases, so that its coefficient cannot " \
      "be estimated: leave it out.") \
    S(StrRegNoVariationInStrata, 21178, \
      "%1 is the same, within each stratum, in all cases that are at risk at the times of uncensored cases, so that " \
      "its coefficient cannot be estimated: leave it out, or do not stratify.") \
    S(StrRegContinuedInAll, 21179, \
      "The iterations were continued beyond their maximum: %1 in all; the number of the summary counts those of the " \
      "last run.") \
    S(StrRegTryZeros, 21180, \
      "No covariate depends on the others: the iteration left the start values for where the likelihood is flat. Start " \
      "nearer to 0.") \
    S(StrRegTooLittle, 21181, \
      "No covariate depends on the others, but the data say too little about %1 coefficients together: choose fewer " \
      "covariates.") \
    S(StrRegLastIterationsInAll, 21182, "Iterations: %1, and %2 in all; the last of them:") \
    S(StrRegSigma, 21183, "Sigma") \
    S(StrRegCannotBeStratified, 21184, "Only the proportional hazards model can be stratified.") \
    S(StrRegCannotBeStratifiedWay, 21185, \
      "Leave out the stratification variable %1, or make it a covariate.") \
    S(StrRegNoLogarithm, 21186, \
      "The survival time %1 of case %2 has no logarithm; cases with such a time: %3. Leave them out, or choose another " \
      "model.") \
    S(StrRegLargerUnits, 21187, \
      "The log-likelihood is above 0, as the survival times are small numbers, and cannot meet the test of convergence: " \
      "express them in larger numbers, say days in place of years.") \
    S(StrRegOvershot, 21188, \
      "A step of the iteration went too far, as in some cases the hazard is many times that of the others. Give start " \
      "values nearer to the estimates; with an indicator, let 1 stand for the group of the lower hazard.") \
    S(StrRegSubtract, 21189, \
      "The values of %1 differ little for their size (standard deviation %3): subtract a constant from %1, say %2.") \
    S(StrRegUnboundedParametric, 21190, \
      "The coefficient of %1 grows without bound: its value is %2 in all uncensored cases, and no other case has a " \
      "%3 one. Its estimate and standard error mean nothing; the likelihood has no maximum.") \
    S(StrRegSmaller, 21191, "smaller") \
    S(StrRegGreater, 21192, "greater") \
    S(StrRegDependentUncensored, 21193, \
      "Among the uncensored cases, of which start values are made, %1 depends on the covariates before it (%2): give " \
      "start values, sigma above 0, or leave one of them out.") \
    S(StrRegConstantUncensored, 21194, \
      "Among the uncensored cases, of which start values are made, %1 does not vary: give start values, sigma above 0, " \
      "or leave it out.") \
    S(StrRegUnfit, 21195, \
      "The cases do not fit an exponential model: it needs cases, covariates, times of 0 or more, and each case either " \
      "complete or censored.") \
    S(StrRegTryOwnStart, 21196, \
      "No covariate depends on the others: the iteration left the start values for where the likelihood is flat. Leave " \
      "them to the model.") \
    S(StrRegNoScale, 21197, \
      "Sigma comes down to 0, as the model fits the uncensored cases exactly: choose fewer covariates.") \
    S(StrRegUnboundedCombination, 21198, \
      "The coefficients of %1 grow without bound together, the constant possibly with them: a combination of them has " \
      "one value in all uncensored cases, and all others lie on one side of it, as where the group that indicators are " \
      "compared with has no uncensored case. Their estimates and standard errors mean nothing; the likelihood has no maximum.") \
    S(StrRegNotAMaximum, 21199, \
      "The iteration ended where the likelihood has no maximum: its information has no inverse there, and there are no " \
      "standard errors. Use a smaller convergence criterion, or other start values.") \
    S(StrRegStartTooFar, 21200, \
      "The start values are too far from the estimates: give nearer ones, or leave them to the model.") \
    S(StrRegBadTimes, 21201, \
      "The survival times are too large or too small to compute with (from %1 to %2): express them in other units.") \
    S(StrRegOfNullModel, 21202, \
      "The model itself was estimated; the iterations below are those of its null model, the constant and sigma alone.") \
    S(StrRegNullNoScale, 21203, \
      "The model itself was estimated; sigma of its null model comes down to 0, as all uncensored cases are alike.") \
    S(StrRegEmRanAway, 21204, \
      "The iteration ran away, to a sigma of %1: its steps overshoot where only %2 of %3 cases are uncensored. More " \
      "iterations do not help. Take the exponential model, which is fitted otherwise, or data with more uncensored " \
      "cases.")
// clang-format on
