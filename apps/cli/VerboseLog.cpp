#include "apps/cli/VerboseLog.h"

#include <array>
#include <cstdio>

namespace korvana::cli {
namespace {

std::string counted(int count, const std::string& what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

/// " Sorting ... " is "Sorting".
std::string_view phaseOf(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    const auto last = text.find_last_not_of(" .");
    return first == std::string_view::npos || last == std::string_view::npos
               ? std::string_view{}
               : text.substr(first, last + 1 - first);
}

} // namespace

void VerboseLog::declare(CLI::App& app) {
    app.add_flag("--verbose", wanted_, "report on standard error what is read and done, and when")
        ->group("Output");
}

void VerboseLog::begin(Console& console) {
    console_ = wanted_ ? &console : nullptr;
    since_ = Clock::now();
}

void VerboseLog::tell(const std::string& text) {
    if (console_ == nullptr) return;
    const std::chrono::duration<double> time = Clock::now() - since_;
    std::array<char, 32> seconds{};
    std::snprintf(seconds.data(), seconds.size(), "[%.3f s] ", time.count());
    console_->say(seconds.data() + text);
}

void VerboseLog::tellData(const ActiveData& active) {
    if (console_ == nullptr) return;
    const DataSet& data = active.dataSet();
    std::array<int, 3> kinds{};
    for (int i = 0; i < data.variableCount(); ++i)
        ++kinds.at(static_cast<std::size_t>(data.variable(i).kind));
    tell("Read " + data.path() + ": " + counted(data.caseCount(), "case") + ", " +
         counted(data.variableCount(), "variable") + " (" + std::to_string(kinds[0]) + " of numbers, " +
         std::to_string(kinds[1]) + " of texts, " + std::to_string(kinds[2]) + " of dates)" +
         (data.hasCaseNames() ? ", with names of cases" : ""));
    if (!data.layout().empty()) tell("Layout: " + data.layout());
    for (const std::string& note : active.notes())
        tell(note);
}

void VerboseLog::status(std::string_view text) {
    const std::string_view phase = phaseOf(text);
    if (phase.empty() || phase == last_) return; // reported already; only its progress is new
    last_ = phase;
    tell(last_);
}

void VerboseLog::iterationLine(std::string_view line) {
    if (phaseOf(line) != last_) tell(std::string(line)); // else it heads the iterations of a phase
}

} // namespace korvana::cli
