#pragma once

#include "host/session/StopSignals.h"

#include <condition_variable>
#include <mutex>
#include <thread>

namespace korvana::desktop {

/// Asks a session for a breath every 30 ms while it lives: a module computes on the window's own thread, and
/// only a breath lets the window repaint and take clicks meanwhile.
class BreathTimer {
public:
    explicit BreathTimer(StopSignals& stops);
    ~BreathTimer();
    BreathTimer(const BreathTimer&) = delete;
    BreathTimer& operator=(const BreathTimer&) = delete;

private:
    std::mutex mutex_;
    std::condition_variable ended_;
    bool end_ = false;
    std::thread thread_;
};

} // namespace korvana::desktop
