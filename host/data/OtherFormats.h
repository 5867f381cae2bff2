#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace korvana {

/// Throws a DataError when a file is not a text table but of another format, known by its first bytes or its
/// ending; the error names the format and says how to make the data readable.
/// @param beginning  the first bytes, a few thousand of them
/// @param name  of the file, for the message
void refuseOtherFormats(std::string_view beginning, const std::filesystem::path& path,
                        const std::string& name);

} // namespace korvana
