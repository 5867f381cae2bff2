#pragma once

#include "apps/cli/Script.h"

#include <CLI/App.hpp>
#include <string>

namespace korvana::cli {

/// The confidence level of a results dialog.
class LevelOption {
public:
    void declare(CLI::App& app);
    /// Throws UsageError for anything but a number from 0 to 1.
    void check() const;
    /// Sets the level in the results dialog, if one was given.
    void put(Script& script) const;

private:
    std::string level_;
};

} // namespace korvana::cli
