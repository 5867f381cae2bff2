#pragma once

#include "support/CAnalysisSupport.h"
#include "support/Export.h"

/// The module's entry: a new analysis object without a document, its step table registered; nullptr when
/// memory is short. The host owns the object and destroys it through its virtual destructor before it unloads
/// the module.
extern "C" KORVANA_SUPPORT ozm::CAnalysisSupport* Lum6NewAnalysis();
