#pragma once

#include "module/survdata/StopPoll.h"
#include "support/CAnalysisSupport.h"

namespace ozm::survival {

/// The shared stop test: asks the progress display, then for a stop from outside, then the iteration window,
/// and returns true at the first that reports a stop. Every reading or iterating loop calls it once per case
/// or iteration.
inline bool StopRequested(CAnalysisSupport& host) {
    return host.pcancel() || host.IsExternallyCancelled() || host.Iterations().WasCanceled();
}

/// The same test for a routine that knows no host.
inline StopPoll PollOf(CAnalysisSupport& host) {
    return {[](void* context) { return StopRequested(*static_cast<CAnalysisSupport*>(context)); }, &host};
}

} // namespace ozm::survival
