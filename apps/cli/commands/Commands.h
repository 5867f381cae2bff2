#pragma once

#include "apps/cli/Command.h"

#include <memory>
#include <span>

namespace korvana::cli {

/// The commands of the program, in the order of its help.
std::span<const CommandEntry> commands();

std::unique_ptr<Command> makeLifeTableCommand();
std::unique_ptr<Command> makeKaplanMeierCommand();
std::unique_ptr<Command> makeTwoSampleCommand();
std::unique_ptr<Command> makeKSampleCommand();
std::unique_ptr<Command> makeCoxCommand();
std::unique_ptr<Command> makeCoxTimeCommand();
std::unique_ptr<Command> makeRegressionCommand();
std::unique_ptr<Command> makeInfoCommand();
std::unique_ptr<Command> makeRunCommand();
std::unique_ptr<Command> makeTypelibCommand();
std::unique_ptr<Command> makeCompletionCommand();

} // namespace korvana::cli
