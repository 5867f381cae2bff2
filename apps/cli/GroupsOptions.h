#pragma once

#include "apps/cli/CodeChecks.h"
#include "apps/cli/TimesAndCodes.h"

#include <CLI/App.hpp>
#include <string>
#include <vector>

namespace korvana::cli {

/// A grouping variable with the codes of its groups, for the specification dialogs.
struct Groups {
    int variable = 0; ///< number from 1
    std::vector<double> codes;
};

/// The option that names a grouping variable.
class GroupOption {
public:
    void declare(CLI::App& app);
    /// The variable's number from 0, which has no other role. Throws UsageError.
    [[nodiscard]] int resolve(const ActiveData& data, const TimesAndCodes& others) const;

private:
    std::string variable_;
};

/// The options that name a grouping variable and the codes of two groups.
class TwoGroupsOptions {
public:
    void declare(CLI::App& app);
    /// Checks the options against the data: each code has cases. Throws UsageError.
    [[nodiscard]] Groups resolve(const ActiveData& data, const TimesAndCodes& others) const;

private:
    GroupOption variable_;
    std::vector<CodeOption> codes_{{"--group1", {}}, {"--group2", {}}};
};

/// The options that name a grouping variable and any number of its codes.
class GroupCodesOptions {
public:
    void declare(CLI::App& app);
    /// Checks the options against the data; no codes where none are given. A code that no case has is a
    /// warning, which is added to the remarks. Throws UsageError.
    [[nodiscard]] Groups resolve(const ActiveData& data, TimesAndCodes& others) const;

private:
    GroupOption variable_;
    std::string codes_;
};

} // namespace korvana::cli
