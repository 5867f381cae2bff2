#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>

namespace korvana {

/// The result of work in a separate process, or why there is none.
struct Answer {
    std::string bytes;
    std::string error; ///< empty if it succeeded
};

/// The name of the work in errors, and how long it may take.
struct Work {
    const char* name;     ///< "drawing"
    const char* noMemory; ///< "not enough memory to draw"
    std::optional<std::chrono::seconds> longest;
};

/// Calls `answer` in a separate process and returns its result. A library that runs out of memory may write
/// on the terminal, abort, fault or wait for ever; in a separate process only its work is lost, and the error
/// says so. SIGINT, SIGTERM, SIGHUP and the end of the program end that process at once. Returns nothing when
/// the system cannot start another process (`ulimit -u`).
[[nodiscard]] std::optional<Answer> workApart(const Work& work, const std::function<Answer()>& answer);

} // namespace korvana
