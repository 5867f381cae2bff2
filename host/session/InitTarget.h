#pragma once

#include <filesystem>
#include <string_view>

namespace korvana {

/// The file that a path leads to through symbolic links, whether there is one or not. Throws
/// std::runtime_error for links that go round in a circle.
std::filesystem::path behindLinks(const std::filesystem::path& path);

/// Keeps files from being destroyed that are not initialisation files. Throws std::runtime_error with the
/// reason unless nothing is there yet, or a text that can be written to: empty, or with a section before
/// anything else but comments.
/// @param dataFile  is refused in any case, also by another of its names; empty: none
void requireInitTarget(const std::filesystem::path& path, const std::filesystem::path& dataFile);

/// Replaces a file atomically, with the permissions and, where that is allowed, the owner that it had.
/// Throws std::runtime_error naming the file and the reason.
void replaceInitFile(const std::filesystem::path& path, std::string_view bytes);

} // namespace korvana
