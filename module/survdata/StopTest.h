#pragma once

#include "module/survdata/StopPoll.h"
#include "support/CAnalysisSupport.h"

namespace ozm::survival {

/// The shared stop test: asks the progress display, then the outside, then the iteration window, and answers
/// at the first that reports a stop. Every reading and iterating loop asks it once per case or per iteration.
inline bool StopRequested(CAnalysisSupport& host) {
    return host.pcancel() || host.IsExternallyCancelled() || host.Iterations().WasCanceled();
}

/// The same test for a routine that knows no host.
inline StopPoll PollOf(CAnalysisSupport& host) {
    return {[](void* context) { return StopRequested(*static_cast<CAnalysisSupport*>(context)); }, &host};
}

} // namespace ozm::survival
