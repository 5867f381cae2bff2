#pragma once

#include "host/session/SessionObserver.h"

#include <chrono>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace korvana::cli {

/// How long each phase of a run took. A phase begins with its status text and lasts until the next one;
/// phases of the same text add up.
class PhaseTimes final : public SessionObserver {
public:
    using Clock = std::chrono::steady_clock;

    PhaseTimes() : since_(Clock::now()) {}

    void status(std::string_view text) override;
    /// One line per phase, in the order in which they began, and their sum.
    void write(std::ostream& out);

private:
    struct Phase {
        std::string name;
        Clock::duration time{};
    };

    void endPhase();

    std::vector<Phase> phases_;
    std::string current_;
    Clock::time_point since_;
};

} // namespace korvana::cli
