#pragma once

#include "module/lifetable/LifeState.h"
#include "module/survdata/OutputResult.h"
#include "module/survdata/SharedSettings.h"
#include "support/CAnalysisSupport.h"

#include <string>
#include <vector>

namespace ozm::survival {

/// What the outputs of a run are made of.
struct LifeReportOf {
    CAnalysisSupport& host;
    const SharedSettings& shared;
    const LifeResults& results;
};

/// The lines of the summary after its title: variables and counts of observations.
std::vector<std::string> LifeSummaryLines(const LifeReportOf& of);

/// Report with the summary and the input, then the life table, one row per interval.
OutputResult WriteLifeTable(const LifeReportOf& of);

} // namespace ozm::survival
