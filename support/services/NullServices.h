#pragma once

#include "support/services/HostServices.h"

namespace ozm {

/// The services of an analysis object that has no document: each operation fails quietly.
HostServices& NullServices();

} // namespace ozm
