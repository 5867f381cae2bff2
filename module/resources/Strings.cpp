#include "module/resources/Resources.h"
#include "module/resources/StringIds.h"

#include <algorithm>
#include <iterator>

namespace ozm::survival {
namespace {

// Blanks at the ends belong to the texts: reports align on them.
constexpr StringResource strings[] = {
    {StrLifeTables, "Life tables & Distributions"},
    {StrKaplanMeier, "Kaplan & Meier product-limit method"},
    {StrTwoSamples, "Comparing two samples"},
    {StrKSamples, "Comparing multiple samples"},
    {StrRegression, "Regression models "},
    {StrTimeDependent, "Time-dependent covariates"},

    {StrInvalidTimeVariables, "Invalid number of variables.  To specify survival times select (a) 1 variable "
                              "(with survival times), (b) 2 "
                              "variables with dates, or (c) 6 variables representing dates."},
    {StrIdenticalCensoringCodes,
     "Codes for censored and complete observations are identical. Select two different codes."},
    {StrAnalysisName, "Survival Analysis"},

    {StrKaplanNoMemory, "Not enough memory or too many valid cases; close other applications."},
    {StrReadingDataFile, " Reading data file ... "},
    {StrComputingProductLimit, " Computing product-limit survival analysis... "},
    {StrTooManyCases32000,
     "Too many valid datapoints (max=32000; contact Korvana technical support for availability "
     "of larger versions)."},
    {StrTooFewUncensored, "Not enough valid uncensored cases to perform analysis."},
    {StrTooFewValid, "Fewer than two valid cases."},
    {StrNoUncensored, "There are no uncensored cases; cannot estimate parameters.  "},
    // Quotes a maximum below the real capacity; users and scripts know the text as it stands.
    {StrTooManyCasesKaplan, "Too many valid datapoints (max=1000000; contact Korvana technical support for "
                            "availability of larger versions)."},

    {StrReportTitle, "KORVANA: SURVIVAL ANALYSIS"},
    {StrNotBuiltYet, "This analysis is not part of this version yet; choose another one."},
    {StrUnexpectedError, "The analysis stopped on an unexpected error; nothing was computed."},
    {StrSorting, " Sorting ... "},
    {StrPrinting, " Printing... "},
    {StrSpreadsheetFailed, "The results spreadsheet could not be created."},
    {StrNoCensoringVariable, "Select one variable with the censoring indicator."},
    {StrDataFile, "Data file:  "},

    {StrTimesVariable, "Variable with survival times:"},
    {StrTimesFromDates, "Survival times computed from dates (MM-DD-YY)"},
    {StrVariables, "Variables:"},
    {StrStartMonth, "(month; beginning of observation)"},
    {StrStartDay, "(day;   beginning of observation)"},
    {StrStartYear, "(year;  beginning of observation)"},
    {StrEndMonth, "(month; at termination or censoring)"},
    {StrEndDay, "(day;   at termination or censoring)"},
    {StrEndYear, "(year;  at termination or censoring)"},
    {StrStartDate, "(beginning of observation)"},
    {StrEndDate, "(time at termination or censoring)"},
    {StrCensoringVariable, "Variable with censoring indicator:"},
    {StrCodes, "Codes:"},
    {StrCompleteObservations, "(complete observations)"},
    {StrCensoredObservations, "(censored observations)"},
    {StrGroupVariable, "Variable with group codes:"},
    {StrGroup1, "(Group 1)"},
    {StrGroup2, "(Group 2)"},
    {StrUnsetCode, "--"},

    {StrKmResultsTitle, "Product-Limit (Kaplan-Meier) Analysis Results"},
    {StrKmVariable, "Variable:    "},
    {StrKmDaysComputed, "number of days computed from data"},
    {StrKmCensoringVariable, "Variable with censoring indicator:    "},
    {StrKmValid, "Total number of valid observations:   "},
    {StrKmUncensored, "uncensored:    "},
    {StrKmCensored, "censored:      "},
    {StrKmTableTitle, "Kaplan-Meier (Product-limit) analysis"},
    {StrKmCensoredNote, "Note: Censored cases are marked with +"},
    {StrKmCases, "Cases       to     "},
    {StrKmColTime, " Time   "},
    {StrKmColCumulative1, "Cumulatv"},
    {StrKmColCumulative2, "Survival"},
    {StrKmColError1, "Standard"},
    {StrKmColError2, " Error  "},
    {StrKmColCase1, "Case    "},
    {StrKmColNumber, "Number  "},
    {StrKmColName, "Name    "},
    {StrKmColMark, "Censored"},
    {StrKmColCount, "Number"},
    {StrKmPercentiles1, "Percentiles of     "},
    {StrKmPercentiles2, "the Survival Function"},
    {StrKmLowerQuartile, "25'th percentile (lower quartile)"},
    {StrKmMedian, "50'th percentile (median) "},
    {StrKmUpperQuartile, "75'th percentile (upper quartile)"},
    {StrKmColSurvival, "Survival"},
    {StrKmColSurvivalTime, " Time   "},
    {StrKmColPercentile, "Percentl"},
    {StrKmLevelLower, "% lower"},
    {StrKmLevelUpper, "% upper"},
    {StrKmPlot1, "Survival Function    "},
    {StrKmPlot2, "Log Survival Times vs. Cumulative Proportion Surviving"},
    {StrKmPlot3, "Log Survival Times vs. Log Cumulative Prop. Surviving"},
    {StrKmAxisTime, "Survival Time"},
    {StrKmAxisLogTime, "Log Survival Time"},
    {StrKmAxisSurviving, "Cumulative Proportion Surviving"},
    {StrKmAxisLogSurviving, "Log Cumulative Proportion Surviving"},
    {StrKmLegendEstimate, "Kaplan-Meier estimate"},
    {StrKmLegendCensored, "Censored"},
    {StrKmLegendObserved, "Uncensored"},
    {StrOnly32000Plotted, "Only the first 32000 cases will be plotted."},
    {StrGraphicsError, " Error in graphics routine."},
    {StrFewerThan3Values, " Fewer than 3 valid values."},
    {StrInvalidLevel,
     "Invalid confidence interval (CI) was specified (Correct range is 0<CI<1);reset to default 0.95"},
};

static_assert(std::is_sorted(std::begin(strings), std::end(strings),
                             [](const StringResource& a, const StringResource& b) { return a.id < b.id; }),
              "lookups search the table by halves");

} // namespace

std::span<const StringResource> StringTable() {
    return strings;
}

} // namespace ozm::survival
