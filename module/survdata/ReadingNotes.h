#pragma once

#include "module/survdata/CaseReader.h"
#include "module/survdata/SharedSettings.h"
#include "support/CAnalysisSupport.h"

#include <string>
#include <vector>

namespace ozm::survival {

/// What the user should know about a reading pass, one sentence each: how two time variables were
/// interpreted, how many cases were left out and why, and which weights have an effect that may surprise.
/// Empty where all is as expected.
std::vector<std::string> ReadingNotes(CAnalysisSupport& host, const SharedSettings& settings,
                                      const ReadingCounts& counts);

/// Adds these notes to the results of the run.
void TellReading(CAnalysisSupport& host, const SharedSettings& settings, const ReadingCounts& counts);

/// Details for the message of a pass that found too few observations: how many cases were read, why they were
/// left out, and which codes the censoring variable has. When cases of other groups were left out, the codes
/// of the grouping variable too.
std::string DescribeReading(CAnalysisSupport& host, const SharedSettings& settings,
                            const ReadingCounts& counts);

} // namespace ozm::survival
