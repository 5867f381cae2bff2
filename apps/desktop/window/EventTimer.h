#pragma once

#include "host/session/StopSignals.h"

#include <condition_variable>
#include <mutex>
#include <thread>

namespace korvana::desktop {

/// Makes a session let the window process events every 30 ms: a module computes on the window's own thread,
/// and only between its steps can the window repaint and take clicks.
class EventTimer {
public:
    explicit EventTimer(StopSignals& stops);
    ~EventTimer();
    EventTimer(const EventTimer&) = delete;
    EventTimer& operator=(const EventTimer&) = delete;

private:
    std::mutex mutex_;
    std::condition_variable ended_;
    bool end_ = false;
    std::thread thread_;
};

} // namespace korvana::desktop
