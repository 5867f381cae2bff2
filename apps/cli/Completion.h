#pragma once

#include "apps/cli/CommandApp.h"

#include <ostream>
#include <string>
#include <vector>

namespace korvana::cli {

/// Scripts that make a shell complete commands, options, files, fixed values, and variables from the header
/// of the data file in the line (`korvana completion variables FILE` lists them).
void writeBashCompletion(const std::vector<CommandApp>& commands, std::ostream& out);
void writeZshCompletion(const std::vector<CommandApp>& commands, std::ostream& out);
void writeFishCompletion(const std::vector<CommandApp>& commands, std::ostream& out);

/// The names of a file's variables, one per line, from the beginning of the file only. None when it cannot be
/// read.
void writeVariableNames(const std::string& path, std::ostream& out);

} // namespace korvana::cli
