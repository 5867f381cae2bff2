#pragma once

#include "support/ModuleResources.h"

#include <string_view>

namespace ozm::survival {

/// The resources of all analyses, as the host gets them.
const ModuleResources& Resources();

/// The text with this number in the module's table; empty when there is none.
std::string_view Text(int id);

} // namespace ozm::survival
