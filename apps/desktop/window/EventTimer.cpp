#include "apps/desktop/window/EventTimer.h"

#include <chrono>

namespace korvana::desktop {

EventTimer::EventTimer(StopSignals& stops)
    : thread_([this, &stops] {
          std::unique_lock lock(mutex_);
          while (!ended_.wait_for(lock, std::chrono::milliseconds(30), [this] { return end_; }))
              stops.askForEvents();
      }) {}

EventTimer::~EventTimer() {
    {
        const std::lock_guard lock(mutex_);
        end_ = true;
    }
    ended_.notify_one();
    thread_.join();
}

} // namespace korvana::desktop
