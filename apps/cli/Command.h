#pragma once

#include "apps/cli/Console.h"

#include <CLI/App.hpp>
#include <memory>

namespace korvana::cli {

/// One command of the program.
class Command {
public:
    virtual ~Command() = default;
    /// Declares the options; they write into the command.
    virtual void declare(CLI::App& app) = 0;
    /// Answers an exit code. Throws UsageError, DataError, ExpressionError, ModuleError.
    virtual int run(Console& console) = 0;
};

/// A row of the table of commands.
struct CommandEntry {
    const char* name;
    const char* summary;
    std::unique_ptr<Command> (*make)();
};

} // namespace korvana::cli
