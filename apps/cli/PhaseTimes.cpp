#include "apps/cli/PhaseTimes.h"

#include <algorithm>
#include <iomanip>

namespace korvana::cli {

void PhaseTimes::endPhase() {
    const Clock::time_point now = Clock::now();
    auto phase =
        std::find_if(phases_.begin(), phases_.end(), [this](const Phase& p) { return p.name == current_; });
    if (phase == phases_.end()) phase = phases_.insert(phase, Phase{current_, {}});
    phase->time += now - since_;
    since_ = now;
}

void PhaseTimes::status(std::string_view text) {
    endPhase();
    // " Sorting ... " is shown as "Sorting".
    const auto first = text.find_first_not_of(' ');
    const auto last = text.find_last_not_of(" .");
    current_ = first == std::string_view::npos || last == std::string_view::npos
                   ? std::string{}
                   : std::string{text.substr(first, last + 1 - first)};
}

void PhaseTimes::write(std::ostream& out) {
    endPhase();
    Clock::duration all{};
    std::size_t width = 5;
    for (const Phase& phase : phases_)
        width = std::max(width, phase.name.size());
    const auto line = [&](std::string_view name, Clock::duration time) {
        out << std::left << std::setw(static_cast<int>(width)) << name << "  " << std::right << std::setw(8)
            << std::fixed << std::setprecision(3) << std::chrono::duration<double>(time).count() << " s\n";
    };
    for (const Phase& phase : phases_) {
        line(phase.name.empty() ? "other" : phase.name, phase.time);
        all += phase.time;
    }
    line("total", all);
}

} // namespace korvana::cli
