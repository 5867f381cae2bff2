#pragma once

#include "module/survdata/StopPoll.h"
#include "support/CAnalysisSupport.h"

#include <atomic>

namespace ozm::survival {

/// The shared stop test: asks the progress display, then for a stop from outside, then the iteration window,
/// and returns true at the first that reports a stop. Every reading or iterating loop calls it once per case
/// or iteration.
inline bool StopRequested(CAnalysisSupport& host) {
    return host.pcancel() || host.IsExternallyCancelled() || host.Iterations().WasCanceled();
}

/// The same test for the cases of a reading pass: where the host has a word for it, the three are asked only
/// when the word is set, and for the first of every 512 cases.
class StopTestPerCase {
public:
    explicit StopTestPerCase(CAnalysisSupport& host) : host_(host), word_(host.StopWord()) {}

    bool operator()() {
        const bool due = calls_++ % 512 == 0;
        if (word_ != nullptr && !due && word_->load(std::memory_order_relaxed) == 0) return false;
        return StopRequested(host_);
    }

private:
    CAnalysisSupport& host_;
    const std::atomic<unsigned>* word_;
    unsigned calls_ = 0;
};

/// The same test for a routine that knows no host.
inline StopPoll PollOf(CAnalysisSupport& host) {
    return {[](void* context) { return StopRequested(*static_cast<CAnalysisSupport*>(context)); }, &host};
}

} // namespace ozm::survival
