#pragma once

#include "apps/cli/Console.h"

#include <CLI/App.hpp>
#include <memory>
#include <string>
#include <vector>

namespace korvana::cli {

/// One command of the program.
class Command {
public:
    virtual ~Command() = default;
    /// Declares the options; they write into the command.
    virtual void declare(CLI::App& app) = 0;
    /// The values that an option (without its hyphens, or DATA) accepts, if only some. For completion in
    /// shells.
    [[nodiscard]] virtual std::vector<std::string> choices(const std::string& /*option*/) const { return {}; }
    /// For a command that passes on what follows its first argument: takes all of them as they are. By
    /// default they are its options, which false says.
    virtual bool takeAsGiven(const std::vector<std::string>& /*given*/) { return false; }
    /// Returns an exit code. Throws UsageError, DataError, ExpressionError, ModuleError.
    virtual int run(Console& console) = 0;
};

/// A row of the table of commands.
struct CommandEntry {
    const char* name;
    const char* summary;
    std::unique_ptr<Command> (*make)();
};

} // namespace korvana::cli
