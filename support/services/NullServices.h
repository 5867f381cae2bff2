#pragma once

#include "support/Export.h"
#include "support/services/HostServices.h"

namespace ozm {

/// The services of an analysis object that has no document: each operation fails quietly.
KORVANA_SUPPORT HostServices& NullServices();

} // namespace ozm
