#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>

namespace korvana {

/// What a process of its own answers, or why it answers nothing.
struct Answer {
    std::string bytes;
    std::string error; ///< empty when it answered
};

/// How an error names the work, and how long it may take.
struct Work {
    const char* name;     ///< "drawing"
    const char* noMemory; ///< "not enough memory to draw"
    std::optional<std::chrono::seconds> longest;
};

/// Calls `answer` in a process of its own and takes over what it answers. A library out of memory writes on
/// the terminal, aborts, faults or waits for ever; in a process of its own it takes nothing but its work with
/// it, and the error says so. Stops (SIGINT, SIGTERM, SIGHUP) end that process at once, whatever the program
/// does about them, and so does the end of the program. Nothing when the system has no room for a further
/// process (`ulimit -u`).
[[nodiscard]] std::optional<Answer> workApart(const Work& work, const std::function<Answer()>& answer);

} // namespace korvana
