#pragma once

#include <string>
#include <vector>

namespace korvana::cli {

/// Replaces this program by Python, which runs a script with arguments and finds the package `korvana` that
/// belongs to this program; so signals and the exit status are the script's. Returns only by throwing
/// std::runtime_error: there is no Python, or no package.
///
/// The interpreter is the one named by the environment variable KORVANA_PYTHON, else that of an active
/// virtual environment, else the one that the package was built for, else `python3`.
/// @param arguments  the script, or "-" for standard input, and what it gets
[[noreturn]] void becomePython(const std::vector<std::string>& arguments);

} // namespace korvana::cli
