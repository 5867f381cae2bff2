#pragma once

#include "module/resources/StringList.h"

// Texts of the outputs that only the proportional hazards model has.

// clang-format off
#define OZM_COX_RESULT_STRINGS(S) \
    S(StrCoxMartingaleTitle, 21301, "Martingale Residuals vs. Linear Predictor") \
    S(StrCoxLogLogTitle, 21302, "Log Cumulative Hazard vs. Log Survival Time") \
    S(StrCoxAxisPredictor, 21305, "Linear Predictor (Covariates less their Means)") \
    S(StrCoxAxisMartingale, 21306, "Martingale Residual") \
    S(StrCoxAxisLogTime, 21307, "Log Survival Time") \
    S(StrCoxAxisLogHazard, 21308, "Log Cumulative Hazard") \
    S(StrCoxAllCases, 21309, "All cases") \
    S(StrCoxNoteTimeZero, 21310, "Events left out, as time 0 has no logarithm: %1.") \
    S(StrCoxNoteLogLog, 21311, \
      "The cumulative hazard is at the means of the covariates. Hazards of strata that are proportional give " \
      "curves of equal distance.") \
    S(StrCoxNoteMartingale, 21312, \
      "A martingale residual is 1 for an event, 0 for a censored case, less the number of events expected of the " \
      "case up to its time; a bend in the points' course suggests that a covariate acts other than linearly.") \
    S(StrCoxNotePredictor, 21327, \
      "The linear predictor is the sum of Beta times the covariate less its mean.") \
    S(StrCoxTableTitle, 21328, "Baseline Survival and Hazard (Breslow)") \
    S(StrCoxColHazard2, 21334, "Hazard") \
    S(StrCoxHazardInFull, 21335, "Cumulative hazard") \
    S(StrCoxColHazardError2, 21336, "Std.Err.") \
    S(StrCoxHazardErrorInFull, 21337, "Standard error of the cumulative hazard") \
    S(StrCoxColAtZero1, 21340, "Hazard") \
    S(StrCoxColAtZero2, 21341, "at 0") \
    S(StrCoxAtZeroInFull, 21342, "Cumulative hazard with all covariates 0") \
    S(StrCoxNoteTable, 21343, \
      "Cumulative hazard (Breslow's estimator) and survival, exp(-hazard), are those at the means of the " \
      "covariates; the last column is the cumulative hazard where all covariates are 0.") \
    S(StrCoxNoteNoLimits, 21347, "The limits of so many curves are left out; the table has them.") \
    S(StrCoxProportionalTitle, 21352, "Test of Proportional Hazards") \
    S(StrCoxColCorrelation, 21353, "Correltn") \
    S(StrCoxCorrelationInFull, 21354, "Correlation with the rank of time") \
    S(StrCoxRowAll, 21355, "All together") \
    S(StrCoxNoteProportional, 21356, \
      "Tests whether a coefficient changes with time: by its scaled Schoenfeld residuals against the rank of the " \
      "time of the event (Grambsch & Therneau 1994). A small p says that the effect of the variable is not the " \
      "same at all times.") \
    S(StrCoxSchoenfeldTitle, 21357, "Scaled Schoenfeld Residuals") \
    S(StrCoxColRank1, 21358, "Rank of") \
    S(StrCoxRankInFull, 21359, "Rank of time among the events") \
    S(StrCoxNoteSchoenfeld, 21360, \
      "One row per event: around each Beta as it would be at that time. Equal times have the mean of their ranks.") \
    S(StrCoxSchoenfeldChart, 21361, "Scaled Schoenfeld Residuals: %1") \
    S(StrCoxAxisRank, 21362, "Rank of the Time of the Event") \
    S(StrCoxAxisSchoenfeld, 21363, "Beta at that Time") \
    S(StrCoxLegendResiduals, 21364, "Scaled Schoenfeld residuals") \
    S(StrCoxLegendBeta, 21365, "Beta = %1") \
    S(StrCoxLegendTrend, 21366, "Trend") \
    S(StrCoxNoteTrend, 21367, \
      "Where hazards are proportional the trend is level: p = %1 for a trend this steep.") \
    S(StrCoxForestTitle, 21368, "Hazard Ratios with %1% Limits") \
    S(StrCoxAxisRatio, 21369, "Hazard Ratio, exp(Beta), on a Logarithmic Scale") \
    S(StrCoxLegendRatio, 21371, "Hazard ratio") \
    S(StrCoxNoteForest, 21374, \
      "A hazard ratio is per 1 unit of its variable. Limits that reach across 1 are compatible with no effect.") \
    S(StrCoxNoRatio, 21376, "No hazard ratio has limits that can be drawn.") \
    S(StrCoxColStratum, 21377, "Stratum") \
    S(StrCoxNoteUserTable, 21379, \
      "Cumulative hazard (Breslow's estimator) and survival, exp(-hazard), of somebody with these covariates.") \
    S(StrCoxNoteNoCorrelation, 21382, \
      "No correlation, as all events have the same time, or all residuals are equal.") \
    S(StrCoxNoteConcordance, 21384, \
      "Concordance: of all pairs of cases of which one is known to have had the event first, the share in which it " \
      "had the higher predicted risk; 0.5 is chance, 1 perfect.")
// clang-format on

namespace ozm::survival {

OZM_STRINGS(coxResultStrings, OZM_COX_RESULT_STRINGS);

} // namespace ozm::survival
