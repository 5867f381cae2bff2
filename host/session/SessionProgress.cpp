#include "host/session/SessionProgress.h"

#include <algorithm>

namespace korvana {

void SessionProgress::dstart(unsigned count) {
    units_ = count;
    done_ = 0;
    // A Cancel that no computation noticed must not stop the next one; but a computation may have several
    // parts, and a Cancel between two of them stops it.
    if (!parts_.commandRuns()) parts_.stops->clear(StopSignals::Display);
    parts_.observers.computationStarted(count);
}

void SessionProgress::termom(unsigned count) {
    done_ += std::min(count, units_ - done_);
    parts_.observers.progress(done_, units_);
}

void SessionProgress::processEvents() {
    if (parts_.stops->take(StopSignals::Events)) parts_.observers.processEvents();
}

bool SessionProgress::cancelled() {
    processEvents();
    return parts_.stops->take(StopSignals::Display);
}

bool SessionProgress::stopped() {
    processEvents();
    return parts_.stops->has(StopSignals::External);
}

void SessionProgress::IterationLines::AddText(std::string_view line) {
    owner.parts_.book->iterations.emplace_back(line);
    owner.parts_.observers.iterationLine(line);
}

} // namespace korvana
