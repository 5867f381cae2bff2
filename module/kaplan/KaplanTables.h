#pragma once

#include "module/kaplan/KaplanState.h"
#include "support/CAnalysisSupport.h"

namespace ozm::survival {

/// The spreadsheets of the summary: counts of observations, and the product-limit table with one row per
/// observation in time order. Answers the string number of the message to show, 0 when all went well or the
/// user stopped it.
int WriteKaplanTables(CAnalysisSupport& host, KaplanResults& results);

} // namespace ozm::survival
