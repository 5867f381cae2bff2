#pragma once

#include "module/resources/StringList.h"

// What comparisons of groups share: life tables by group.

// clang-format off
#define OZM_GROUP_STRINGS(S) \
    S(StrInvalidGroupCode, 12358, \
      "The code for one of the groups has not been selected, or is not valid; please check the text " \
      "values in the grouping variable.") \
    S(StrComputingSurvival, 20260, " Computing survival... ") \
    S(StrComputingCumulative, 20261, " Computing cumulative survival...") \
    S(StrLtLower1, 20262, "Lower   ") \
    S(StrLtLower2, 20263, "Limit   ") \
    S(StrLtEntering, 20264, "No.Enter") \
    S(StrLtCensored, 20265, "No.Cnsrd") \
    S(StrLtDying, 20266, "No.Dying") \
    S(StrLtSurviving, 20267, "% Srvvng") \
    S(StrLtCumulative, 20268, "Cum.%.Sr") \
    S(StrLtAxisStart, 20269, "Interval Start") \
    S(StrLtSurvivorship, 20270, "Survivorship") \
    S(StrLtAxisSurviving, 20271, "Proportion Surviving") \
    S(StrLtAxisCumulative, 20272, "Cumulative Proportion Surviving") \
    S(StrLtLegendGroup, 20273, "Group  ") \
    S(StrLtFewerThan3Cases, 20274, " Fewer than 3 valid cases.  ") \
    S(StrLtNoWidth, 20275, \
      "At least one interval has width of less/equal zero; check your input data file") \
    S(StrLtNoteCorrected, 20276, \
      "Note: An interval without a death is given half a death, one that nobody survives half a " \
      "survivor.") \
    S(StrLtCasesOfGroups, 20277, \
      "A life table needs three valid cases: there are %1 of %2.") \
    S(StrLtLargestTime, 20278, \
      "The largest survival time is %1 (from %2): it cannot be divided into intervals.") \
    S(StrLtCasesWithCode, 20279, "%1 with code %2") \
    S(StrLtEnteringInFull, 20280, "number entering") \
    S(StrLtCensoredInFull, 20281, "number censored") \
    S(StrLtDyingInFull, 20282, "number dying") \
    S(StrLtSurvivingInFull, 20283, "% surviving") \
    S(StrLtCumulativeInFull, 20284, "cumulative % surviving") \
    S(StrPreparingData, 20300, " Preparing data for analysis ... ")
// clang-format on

namespace ozm::survival {

OZM_STRINGS(groupStrings, OZM_GROUP_STRINGS);

} // namespace ozm::survival
