#pragma once

#include <filesystem>

namespace korvana {

/// Keeps files from being destroyed that are not initialisation files. Throws std::runtime_error with the
/// reason unless nothing is there yet, or a text that can be written to: empty, or with a section before
/// anything else but comments.
/// @param dataFile  is refused in any case, also by another of its names; empty: none
void requireInitTarget(const std::filesystem::path& path, const std::filesystem::path& dataFile);

} // namespace korvana
