#pragma once

#include <filesystem>
#include <vector>

namespace korvana {

/// Where the project's own libraries are: beside the library or program with this code, which in a Python
/// package is the extension, and beside the running program; each in the layouts of the build, of an
/// installation and of a package. In the order in which to look; folders need not exist.
[[nodiscard]] std::vector<std::filesystem::path> libraryFolders();

} // namespace korvana
