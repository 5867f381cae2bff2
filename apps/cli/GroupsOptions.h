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
    explicit GroupOption(const char* option = "--group", const char* help = "variable with the groups")
        : option_(option), help_(help) {}
    void declare(CLI::App& app);
    [[nodiscard]] bool isGiven() const { return !variable_.empty(); }
    /// The variable's number from 0, which has no other role. Throws UsageError.
    [[nodiscard]] int resolve(const ActiveData& data, const TimesAndCodes& others) const;

private:
    const char* option_;
    const char* help_;
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
    struct Names {
        const char* option = "--group";
        const char* help = "variable with the groups";
        const char* codesOption = "--codes";
        const char* codesHelp = "its codes of the groups, in this order [all that selected cases have]";
    };
    GroupCodesOptions() : GroupCodesOptions(Names()) {}
    explicit GroupCodesOptions(const Names& names) : names_(names), variable_(names.option, names.help) {}
    void declare(CLI::App& app);
    /// For a variable that may be left out: refuses codes without it. Throws UsageError.
    void check() const;
    [[nodiscard]] bool isGiven() const { return variable_.isGiven(); }
    /// Checks the options against the data; no codes where none are given. A code that no case has is a
    /// warning, which is added to the remarks. Throws UsageError.
    [[nodiscard]] Groups resolve(const ActiveData& data, TimesAndCodes& others) const;

private:
    Names names_;
    GroupOption variable_;
    std::string codes_;
};

} // namespace korvana::cli
