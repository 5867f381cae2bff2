#pragma once

#include "module/lifetable/Intervals.h"
#include "module/lifetable/LifeState.h"
#include "module/lifetable/LifeStatus.h"
#include "module/survdata/CaseReader.h"
#include "module/survdata/SharedSettings.h"
#include "module/survdata/StatusLine.h"
#include "support/CAnalysisSupport.h"

#include <cstdint>

namespace ozm {
class CAnalysisDialog;
}

namespace ozm::survival {

/// What a run with raw data learns on its way.
struct RawInput {
    ReadingCounts reading;
    std::int32_t capacity = 0;
    std::int32_t censored = 0; ///< among the valid observations
    double largestTime = 0.0;
};

/// Reads the observations, builds the intervals by the settings and counts the observations into them. A step
/// size that does not fit is refused with a warning over `window`, and the settings changed for good.
LifeStatus CountRawData(CAnalysisSupport& host, SharedSettings& shared, LifeSettings& settings,
                        CAnalysisDialog* window, StatusLine& line, IntervalCounts& counts, RawInput& input);

} // namespace ozm::survival
