#pragma once

#include "host/results/ResultsBook.h"

#include <exception>
#include <stdexcept>
#include <utility>

namespace korvana::cli {

/// The analysis came to no result: its message, and everything that was said.
class CallRefused : public std::runtime_error {
public:
    CallRefused(ResultMessage message, std::vector<ResultMessage> all)
        : std::runtime_error(message.text), message_(std::move(message)), all_(std::move(all)) {}
    /// The message that says why; its number is 0 where it is not one of the analysis.
    [[nodiscard]] const ResultMessage& message() const { return message_; }
    [[nodiscard]] const std::vector<ResultMessage>& messages() const { return all_; }

private:
    ResultMessage message_;
    std::vector<ResultMessage> all_;
};

/// The call was stopped by its StopSignals.
struct CallStopped : std::exception {
    const char* what() const noexcept override { return "the analysis was stopped"; }
};

} // namespace korvana::cli
