#pragma once

#include "support/automation/AutomationObject.h"

#include <CLI/App.hpp>
#include <cstddef>
#include <string>
#include <vector>

namespace korvana::cli {

/// How an iterative estimation is done: its criterion, the most iterations and its start.
class EstimationOptions {
public:
    void declare(CLI::App& app);
    /// Checks what can be judged without the data. Throws UsageError.
    void check();
    /// Checks that there is a start value for each parameter. Throws UsageError.
    void checkStart(const std::vector<std::string>& parameters) const;
    /// Whether one of them was given that the dialog of the estimation takes.
    [[nodiscard]] bool forDialog() const;
    /// Sets them in that dialog. Throws ScriptError.
    void put(ozm::AutomationObject& dialog) const;
    /// Whether to go on when the iterations are used up, asked for the next time.
    [[nodiscard]] bool goesOn();
    /// The options that allow more iterations, once they were used up; else empty.
    [[nodiscard]] std::string advice() const;

private:
    static constexpr int mostContinued = 10;

    std::string criterion_;
    std::string iterations_;
    std::string start_;
    std::vector<double> startValues_;
    bool continue_ = false;
    int continued_ = 0;
    bool usedUp_ = false;
};

} // namespace korvana::cli
