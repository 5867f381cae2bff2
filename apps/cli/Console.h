#pragma once

#include "host/session/StopSignals.h"

#include <atomic>
#include <ostream>
#include <string_view>

namespace korvana::cli {

/// Where a command speaks to its user, and how the user stops it.
struct Console {
    std::ostream& out;
    std::ostream& err;
    bool errIsTerminal = false;
    StopSignals& signals; ///< requestStop() is Ctrl-C
    /// A command that polls `signals` sets this; else Ctrl-C may end the program at once.
    std::atomic<bool> stopsItself = false;

    /// Writes a message to standard error, its first line after "korvana: ". Texts come from files of any
    /// origin: control characters become blanks.
    void say(std::string_view text);
};

/// While it lives, the command stops by itself on Ctrl-C.
class StopsItself {
public:
    explicit StopsItself(Console& console) : console_(console) { console_.stopsItself = true; }
    ~StopsItself() { console_.stopsItself = false; }
    StopsItself(const StopsItself&) = delete;
    StopsItself& operator=(const StopsItself&) = delete;

private:
    Console& console_;
};

enum ExitCode : int {
    ExitResults = 0,
    ExitRefused = 1, ///< the analysis refused the data
    ExitUsage = 2,   ///< wrong usage, data that cannot be read, results that cannot be written
    ExitStopped = 130,
};

} // namespace korvana::cli
