#pragma once

#include "module/groups/PooledSample.h"
#include "module/survdata/OutputResult.h"
#include "module/survdata/SharedSettings.h"
#include "module/twosample/ComputeTests.h"
#include "support/CAnalysisSupport.h"

#include <string>
#include <vector>

namespace ozm::survival {

/// The lines of the summary after its title: variables, counts of observations, and the block of both groups.
std::vector<std::string> TwoSummaryLines(CAnalysisSupport& host, const SharedSettings& shared,
                                         const PooledSample& sample);

/// The report's header: summary and input.
void WriteTwoHeader(CAnalysisSupport& host, const SharedSettings& shared, const PooledSample& sample);

/// One test: its intermediate values as a spreadsheet, then its statistics as report lines and as a
/// spreadsheet.
OutputResult WriteTest(CAnalysisSupport& host, const PooledSample& sample, TwoTest test);

/// The five tests side by side, in one spreadsheet.
OutputResult WriteTestSummary(CAnalysisSupport& host, const PooledSample& sample);

/// The life tables of both groups, side by side in one spreadsheet.
OutputResult WriteGroupLifeTables(CAnalysisSupport& host, const SharedSettings& shared,
                                  const PooledSample& sample);

} // namespace ozm::survival
