#pragma once

#include "support/ModuleResources.h"

#include <string_view>

namespace ozm::survival {

/// Everything that the analyses bring along, as the host gets it.
const ModuleResources& Resources();

/// The text of a number of this module's table; empty when there is none.
std::string_view Text(int id);

} // namespace ozm::survival
