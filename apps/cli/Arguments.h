#pragma once

#include <CLI/App.hpp>
#include <string>
#include <vector>

namespace korvana::cli {

/// The arguments of a command, looked through.
struct Arguments {
    bool help = false; ///< asked for somewhere
    /// What was given, in one form: --name=value, --flag, and the rest behind a "--".
    std::vector<std::string> uniform;
};

/// Looks the arguments of a command through: each option is known, is there once unless it may be repeated,
/// and has a value exactly when it takes one; no value is empty, so that a shell variable without a value
/// changes no analysis; nothing stands where nothing belongs. What follows "--" is no option, whatever it
/// looks like. Throws UsageError, which says what to write instead.
Arguments readArguments(const CLI::App& app, const std::vector<std::string>& given);

} // namespace korvana::cli
