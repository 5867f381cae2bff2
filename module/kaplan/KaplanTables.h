#pragma once

#include "module/kaplan/KaplanState.h"
#include "module/survdata/OutputResult.h"
#include "support/CAnalysisSupport.h"

namespace ozm::survival {

/// The spreadsheets of the summary: counts of observations, and the product-limit table with one row per
/// observation in time order.
OutputResult WriteKaplanTables(CAnalysisSupport& host, KaplanResults& results);

} // namespace ozm::survival
