#pragma once

#include "module/survdata/SharedSettings.h"
#include "support/CAnalysisSupport.h"

#include <cstddef>
#include <vector>

namespace ozm::survival {

/// Fills a selection list with variables of the present data, and keeps their names.
void TakeList(CAnalysisSupport& host, SharedSettings& shared, std::size_t list, std::vector<int> variables);

/// Other data: a list whose variables all exist there by name stays, numbered as they are there. Any other is
/// cleared: a part of it (an end date without its start) would mean something else. Survival times that are
/// texts now are none.
void FindListsAgain(CAnalysisSupport& host, SharedSettings& shared);

} // namespace ozm::survival
