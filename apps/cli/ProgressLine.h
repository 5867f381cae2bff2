#pragma once

#include "apps/cli/Console.h"
#include "host/results/ResultsBook.h"
#include "host/session/SessionObserver.h"

#include <string>
#include <string_view>

namespace korvana::cli {

/// Shows what an analysis is doing: its messages, and on a terminal one line of status text, rewritten.
class ProgressLine final : public SessionObserver {
public:
    /// @param quiet  shows only warnings and errors, and no progress
    /// @param logged  somebody else reports the progress
    ProgressLine(Console& console, bool quiet, bool logged)
        : console_(console), quiet_(quiet), shows_(console.errIsTerminal && !quiet && !logged) {}
    ~ProgressLine() override { clear(); }
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    void status(std::string_view text) override;
    void progressCaption(std::string_view text) override;
    void computationStarted(unsigned units) override;
    void progress(unsigned done, unsigned units) override;
    void computationEnded() override { clear(); }
    void message(const ResultMessage& message) override;
    void iterationLine(std::string_view line) override { status(line); }
    void clear();

    /// A run begins, of several ones with names: its messages say whose they are.
    void begin(const std::string& run);
    /// How many messages there were since.
    [[nodiscard]] int messageCount() const { return messages_; }

private:
    void show();

    Console& console_;
    bool quiet_;
    bool shows_;
    bool visible_ = false;
    int messages_ = 0;
    unsigned percent_ = 0;
    std::string text_;
    std::string caption_; ///< of the part that is counted
    std::string run_;
    ResultMessage last_; ///< message
};

} // namespace korvana::cli
