#pragma once

#include <atomic>

namespace korvana {

/// Requests to a computation from outside its thread. Every member may be called from any thread and from a
/// signal handler.
class StopSignals {
public:
    enum Signal : unsigned {
        External = 1, ///< stop, from a script or a signal; stays until cleared
        Display = 2,  ///< Cancel in the progress display; stops one computation
        Events = 4,   ///< calls the observers' `processEvents`
    };

    void requestStop() noexcept { raise(External); }
    void cancel() noexcept { raise(Display); }
    void askForEvents() noexcept { raise(Events); }

    [[nodiscard]] bool any() const noexcept { return flags_.load(std::memory_order_relaxed) != 0; }
    [[nodiscard]] bool has(Signal signal) const noexcept {
        return (flags_.load(std::memory_order_relaxed) & signal) != 0;
    }
    /// Not 0 while any signal is set.
    [[nodiscard]] const std::atomic<unsigned>& word() const noexcept { return flags_; }
    void clear(Signal signal) noexcept { take(signal); }
    /// Clears a signal; returns whether it was set.
    bool take(Signal signal) noexcept {
        return (flags_.fetch_and(~static_cast<unsigned>(signal), std::memory_order_relaxed) & signal) != 0;
    }

private:
    void raise(Signal signal) noexcept { flags_.fetch_or(signal, std::memory_order_relaxed); }

    std::atomic<unsigned> flags_ = 0;
    static_assert(std::atomic<unsigned>::is_always_lock_free, "a signal handler sets the flags");
};

} // namespace korvana
