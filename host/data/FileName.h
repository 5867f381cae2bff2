#pragma once

#include <filesystem>
#include <string>

namespace korvana {

/// Texts of scripts may hold a NUL character. The system would end the name there and take another file.
inline bool hasNul(const std::filesystem::path& name) {
    return name.native().find('\0') != std::string::npos;
}

inline constexpr const char* nulInName = "the name has a NUL character (\\0); leave it out";

/// A name for a message, which a NUL would cut as well.
inline std::string shownName(const std::filesystem::path& name) {
    std::string shown;
    for (const char c : name.native())
        c == '\0' ? shown += "\\0" : shown += c;
    return shown;
}

} // namespace korvana
