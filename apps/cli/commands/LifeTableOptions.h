#pragma once

#include "host/session/ActiveData.h"
#include "support/automation/AutomationValue.h"

#include <CLI/App.hpp>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace korvana::cli {

/// The options of a life table: the intervals of cases, or a table that is given as data.
class LifeTableInputOptions {
public:
    void declare(CLI::App& app);
    /// Checks what can be judged without the data; `forCases` are the options for cases that were given
    /// beside these. Throws UsageError.
    void check(const std::vector<std::string>& forCases) const;
    [[nodiscard]] bool isTable() const { return !table_.empty(); }
    /// The three variables of the table, numbers from 1. Throws UsageError.
    [[nodiscard]] std::vector<int> tableVariables(const DataSet& data) const;
    /// What the specification dialog is to be set to.
    [[nodiscard]] std::vector<std::pair<const char*, ozm::AutomationValue>> members() const;

private:
    std::string table_;
    std::string entering_;
    std::string intervals_;
    std::string step_;
    bool noCorrection_ = false;
};

/// The options for the fitted distributions, of which the results dialog shows one at a time.
class LifeTableFitOptions {
public:
    void declare(CLI::App& app);
    /// What an option of these takes, by its name without hyphens; empty for those that take any number.
    [[nodiscard]] static std::vector<std::string_view> choices(std::string_view option);
    /// Throws UsageError.
    void check();
    /// The models and the weightings to show, from 1.
    [[nodiscard]] const std::vector<int>& distributions() const { return distributions_; }
    [[nodiscard]] const std::vector<int>& weightings() const { return weightings_; }
    [[nodiscard]] bool namesDistributions() const { return !distributionList_.empty(); }
    /// The lists of numbers as the results dialog takes them; empty: its own.
    [[nodiscard]] const std::string& proportions() const { return proportions_; }
    [[nodiscard]] const std::string& times() const { return times_; }

private:
    std::string distributionList_;
    std::string weightingList_;
    std::string survivalList_;
    std::string timesList_;
    std::vector<int> distributions_;
    std::vector<int> weightings_;
    std::string proportions_;
    std::string times_;
};

} // namespace korvana::cli
