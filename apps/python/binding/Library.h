#pragma once

#include "host/session/ModuleLibrary.h"

namespace korvana::python {

/// An analysis object of the module with the survival analyses. Throws ModuleError.
[[nodiscard]] Analysis loadModule();

} // namespace korvana::python
