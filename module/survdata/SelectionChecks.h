#pragma once

#include "module/survdata/CaseReader.h"
#include "module/survdata/SharedSettings.h"
#include "support/CAnalysisSupport.h"

#include <string>

namespace ozm::survival {

/// What a specification dialog asks of its selections before it runs: one, two or six time variables, a
/// censoring variable, two different codes. Answers the string number of the message to show, 0 when all is
/// well.
int CheckSelections(const SharedSettings& settings);

/// What only this run knows, for the message of a pass that found too few observations: how many cases were
/// read, why they were left out, and which codes the censoring variable has.
std::string DescribeReading(CAnalysisSupport& host, const SharedSettings& settings,
                            const ReadingCounts& counts);

} // namespace ozm::survival
