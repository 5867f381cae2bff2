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

/// The options that name a grouping variable and the codes of two groups.
class GroupsOptions {
public:
    void declare(CLI::App& app);
    /// Checks the options against the data: the variable has no other role, and each code has cases. Throws
    /// UsageError.
    [[nodiscard]] Groups resolve(const ActiveData& data, const TimesAndCodes& others) const;

private:
    std::string variable_;
    std::vector<CodeOption> codes_{{"--group1", {}}, {"--group2", {}}};
};

} // namespace korvana::cli
