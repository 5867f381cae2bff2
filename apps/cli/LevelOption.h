#pragma once

#include "apps/cli/Script.h"

#include <CLI/App.hpp>
#include <string>

namespace korvana::cli {

/// The confidence level of a results dialog.
class LevelOption {
public:
    void declare(CLI::App& app);
    enum class Ends { Included, Excluded };
    /// Throws UsageError for anything but a number from 0 to 1, with or without these themselves.
    void check(Ends ends = Ends::Included) const;
    /// Sets the level in the results dialog, if one was given.
    void put(Script& script) const;

private:
    std::string level_;
};

} // namespace korvana::cli
