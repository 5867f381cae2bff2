#pragma once

#include "module/survdata/SharedSettings.h"
#include "support/CAnalysisSupport.h"

#include <cstddef>
#include <vector>

namespace ozm::survival {

/// Fills a selection list with variables of the current data, and stores their names.
void TakeList(CAnalysisSupport& host, SharedSettings& shared, std::size_t list, std::vector<int> variables);

/// After other data were opened: a list whose variables all exist there by name is kept, with the numbers
/// that they have there. Any other is cleared, as a part of it (an end date without its start) would mean
/// something else. Survival times, and the limits and counts of a table, that are texts in the new data are
/// cleared too.
void FindListsAgain(CAnalysisSupport& host, SharedSettings& shared);

} // namespace ozm::survival
