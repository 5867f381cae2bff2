#pragma once

#include "apps/cli/AnalysisCommand.h"

#include <string>
#include <vector>

namespace korvana::cli {

/// An option of a command as a program may give it.
struct ProgramOption {
    std::string name;  ///< without hyphens
    std::string value; ///< what it takes, as in the help: V[,V...]; empty for a flag
    std::string help;
    std::string group;
    std::vector<std::string> choices; ///< where it takes only some values
    bool isFlag = false;
    bool isList = false; ///< takes several values
};

/// A command that a program can call.
struct ProgramCommand {
    std::string name; ///< as on the command line
    std::string summary;
    std::vector<ProgramOption> options;
    std::vector<AnalysisCommand::Output> outputs;
};

/// The commands that run an analysis, in the order of the help.
[[nodiscard]] std::vector<ProgramCommand> programCommands();

/// A value of an option, or several for one that takes them; none for a flag.
struct GivenOption {
    std::string name; ///< without hyphens
    std::vector<std::string> values;
    bool areEntries = false; ///< of a list, also where it is one alone: a comma in it parts nothing
};

/// Runs a command in the program's own process, without console, files and signals. The module stays loaded.
/// @param file  of the data, empty where the embedding has them
/// Throws UsageError, DataError, ExpressionError, ModuleError, CallRefused, CallStopped.
[[nodiscard]] ResultsBook callCommand(const std::string& name, const std::string& file,
                                      const std::vector<GivenOption>& options, Embedding embedding);

} // namespace korvana::cli
