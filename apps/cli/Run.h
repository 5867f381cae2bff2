#pragma once

#include "apps/cli/Console.h"

#include <string>
#include <vector>

namespace korvana::cli {

/// Runs the program with its arguments (without the program's name) and returns its exit code. Throws
/// nothing.
int run(const std::vector<std::string>& arguments, Console& console);

} // namespace korvana::cli
