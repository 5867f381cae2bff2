#pragma once

#include "support/CAnalysisSupport.h"

#include <span>

namespace ozm::survival {

/// The step table that the module registers with its host: 14 rows, ascending.
std::span<const SEQFUNCTTBL> StepTable();

/// Where a step leads whose analysis is not built yet: says so in a message, and back to the startup dialog.
/// Its users go one by one, as analyses are built.
int NotBuiltYet(CAnalysisSupport& analysis);

} // namespace ozm::survival
