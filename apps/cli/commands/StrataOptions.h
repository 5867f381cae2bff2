#pragma once

#include "apps/cli/GroupsOptions.h"

#include <CLI/App.hpp>
#include <cstdint>
#include <vector>

namespace korvana::cli {

/// The options for strata of Cox's model, whose cases share a baseline hazard.
class StrataOptions {
public:
    void declare(CLI::App& app);
    /// Checks what can be judged without the data. Throws UsageError.
    void check() const;
    [[nodiscard]] bool isGiven() const { return strata_.isGiven(); }
    /// Whether each stratum is also fitted alone.
    [[nodiscard]] bool separate() const { return separate_; }
    /// The variable with the strata, and its codes. Throws UsageError.
    [[nodiscard]] Groups resolve(const ActiveData& data, TimesAndCodes& others) const {
        return strata_.resolve(data, others);
    }
    /// Leaves out of `cases` (1) those that are in no stratum. Throws UsageError.
    void keepCounting(const ActiveData& data, std::vector<std::uint8_t>& cases) const;

private:
    GroupCodesOptions strata_{{.option = "--strata",
                               .help = "variable with strata: equal coefficients, a baseline hazard for each",
                               .codesOption = "--strata-codes",
                               .codesHelp = "its codes of the strata [all that selected cases have]"}};
    bool separate_ = false;
};

} // namespace korvana::cli
