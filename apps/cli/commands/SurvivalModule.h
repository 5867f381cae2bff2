#pragma once

#include "host/session/ModuleLibrary.h"

namespace korvana::cli {

/// Loads the module with the survival analyses. Throws ModuleError.
inline Analysis loadSurvivalModule() {
    return loadAnalysis(modulePaths("libOZMSurvival.so"));
}

} // namespace korvana::cli
