#pragma once

#include "support/CAnalysisSupport.h"

#include <span>

namespace ozm::survival {

/// The step table that the module registers with its host: 14 rows, ascending.
std::span<const SEQFUNCTTBL> StepTable();

} // namespace ozm::survival
