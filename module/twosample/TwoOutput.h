#pragma once

#include "module/survdata/SharedSettings.h"
#include "module/twosample/ComputeTests.h"
#include "support/CAnalysisSupport.h"

#include <cstdint>
#include <string>
#include <vector>

namespace ozm::survival {

/// The lines of the summary after its title: variables, counts of observations, and the block of both groups.
std::vector<std::string> TwoSummaryLines(CAnalysisSupport& host, const SharedSettings& shared,
                                         const GroupCounts& counts);

/// The report's header: summary and input.
void WriteTwoHeader(CAnalysisSupport& host, const SharedSettings& shared, const GroupCounts& counts);

// Each output answers the string number of the message to show, 0 when all went well.

/// One test: its intermediate values as a spreadsheet, then its statistics as report lines and as a
/// spreadsheet.
int WriteTest(CAnalysisSupport& host, const PooledSample& sample, TwoTest test);

/// The five tests side by side, in one spreadsheet.
int WriteTestSummary(CAnalysisSupport& host, const PooledSample& sample);

/// The life tables of both groups, side by side in one spreadsheet.
int WriteGroupLifeTables(CAnalysisSupport& host, const SharedSettings& shared, const PooledSample& sample);

/// Which column of the life tables is plotted: surviving in the interval, or to its start.
enum class SurvivalPlot : std::uint8_t { PerInterval, Cumulative };
int PlotGroupSurvival(CAnalysisSupport& host, const SharedSettings& shared, const PooledSample& sample,
                      SurvivalPlot plot);

/// What a message of the three has no word of: how many cases the groups have, or the times and their
/// variables. Begins with a line break; empty for other messages.
std::string GroupLifeTablesReason(CAnalysisSupport& host, const SharedSettings& shared,
                                  const PooledSample& sample, int message);

} // namespace ozm::survival
