#pragma once

#include <CLI/App.hpp>
#include <string>
#include <vector>

namespace korvana::cli {

/// The arguments of a command, checked.
struct Arguments {
    bool help = false; ///< asked for somewhere
    /// The arguments in one form: --name=value, --flag, and the rest after a "--".
    std::vector<std::string> uniform;
};

/// Checks the arguments of a command: each option is known, is given once unless it may be repeated, and has
/// a value exactly when it takes one; no value is empty, so that an unset shell variable changes no analysis;
/// no argument is out of place. After "--" nothing is an option. Throws UsageError, which says what to write
/// instead.
Arguments readArguments(const CLI::App& app, const std::vector<std::string>& given);

} // namespace korvana::cli
