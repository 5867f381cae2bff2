#pragma once

#include "apps/cli/Console.h"
#include "host/session/ActiveData.h"
#include "host/session/SessionObserver.h"

#include <CLI/App.hpp>
#include <chrono>
#include <string>
#include <string_view>

namespace korvana::cli {

/// --verbose: reports on standard error what the program does, each line with the seconds since it began.
class VerboseLog final : public SessionObserver {
public:
    void declare(CLI::App& app);
    [[nodiscard]] bool isWanted() const { return wanted_; }
    /// To be called before the first report; without --verbose nothing is reported.
    void begin(Console& console);

    void tell(const std::string& text);
    /// Reports what was read: cases, variables by kind, and the notes of the reader, conditions and
    /// definitions.
    void tellData(const ActiveData& data);
    void status(std::string_view text) override;
    void iterationLine(std::string_view line) override;

private:
    using Clock = std::chrono::steady_clock;

    bool wanted_ = false;
    Console* console_ = nullptr;
    Clock::time_point since_;
    std::string last_;
};

} // namespace korvana::cli
