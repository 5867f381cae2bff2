#pragma once

#include "apps/cli/Command.h"

#include <CLI/App.hpp>
#include <memory>
#include <string>
#include <vector>

namespace korvana::cli {

/// A command with its options declared: the source of its help, its completion and the manual page.
struct CommandApp {
    const char* name;
    const char* summary;
    std::unique_ptr<Command> command;
    std::unique_ptr<CLI::App> app;
};

CommandApp makeApp(const CommandEntry& entry);
/// All of them, in the order of the help.
std::vector<CommandApp> makeApps();

/// The values that an option takes, for completion in shells.
struct Values {
    enum class Kind { None, Any, Choice, Variable, Folder, File } kind = Kind::None;
    bool list = false;                ///< several, separated by commas
    std::vector<std::string> choices; ///< of a Choice
};
Values valuesOf(const CommandApp& command, const CLI::Option& option);

/// The first sentence or clause of an option's help, for lists of options.
std::string shortHelp(const CLI::Option& option);

} // namespace korvana::cli
