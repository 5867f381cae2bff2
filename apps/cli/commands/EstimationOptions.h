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
    /// What the help says about options whose meaning depends on the model.
    struct Help {
        const char* criterion;
        const char* start;
        const char* goesOn;
    };
    explicit EstimationOptions(const Help& help) : help_(help) {}

    void declare(CLI::App& app);
    /// Checks what can be judged without the data. Throws UsageError.
    void check();
    /// Checks that there is a start value for each parameter: the coefficients of the covariates, then the
    /// further ones. Throws UsageError.
    void checkStart(const std::vector<std::string>& covariates,
                    const std::vector<std::string>& further) const;
    [[nodiscard]] bool startIsGiven() const { return !start_.empty(); }
    [[nodiscard]] bool mayGoOn() const { return continue_; }
    /// An estimation is about to begin.
    void begin() { continued_ = 0, usedUp_ = false; }
    /// Whether the dialog of the estimation is needed.
    [[nodiscard]] bool forDialog() const;
    /// Sets them in that dialog. Throws ScriptError.
    void put(ozm::AutomationObject& dialog) const;
    /// Whether to go on when the iterations are used up, asked for the next time.
    [[nodiscard]] bool goesOn();
    /// The options that allow more iterations, once they were used up; else empty.
    [[nodiscard]] std::string advice() const;

private:
    static constexpr int mostContinued = 10;
    static constexpr int defaultIterations = 50;

    Help help_;
    std::string criterion_;
    std::string iterations_;
    std::string start_;
    std::vector<double> startValues_;
    bool continue_ = false;
    int continued_ = 0;
    bool usedUp_ = false;
};

} // namespace korvana::cli
