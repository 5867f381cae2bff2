#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace korvana {

bool isUtf8(std::string_view text);

/** The text as UTF-8; a text that is not is taken as Windows-1252 (Western European), byte by byte. */
std::string toUtf8(std::string_view text);

/** A text for a message: at most about the given number of bytes, cut between characters, in one line. */
std::string brief(std::string_view text, std::size_t most = 40);

} // namespace korvana
