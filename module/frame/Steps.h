#pragma once

#include "support/CAnalysisSupport.h"

#include <span>

namespace ozm::survival {

/// The step table that the module registers with its host: 14 rows, ascending.
std::span<const SEQFUNCTTBL> StepTable();

/// The step of an analysis that is not built yet: shows a message and goes back to the startup dialog.
int NotBuiltYet(CAnalysisSupport& analysis);

} // namespace ozm::survival
