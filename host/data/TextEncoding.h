#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace korvana {

bool isUtf8(std::string_view text);

/// The text as UTF-8; a text that is not is taken as Windows-1252 (Western European), byte by byte.
std::string toUtf8(std::string_view text);
std::string fromWindows1252(std::string_view text);
/// Nothing if the text, in UTF-8, has a character that Windows-1252 lacks.
std::optional<std::string> toWindows1252(std::string_view text);

/// The first byte of a text that is not UTF-8 for which Windows-1252 has no character either.
std::optional<unsigned char> byteOfNoCharacter(std::string_view text);

/// The text of an error about such a byte, with what to do.
std::string noCharacter(unsigned char byte);

/// A text for a terminal, in one line: control characters are written as \n, \t or \x1B, bytes that are not
/// UTF-8 as \x81. Messages show labels with control characters in this form.
std::string withEscapes(std::string_view text);

/// A text of a file for a message: decoded, withEscapes, and a long text cut between characters to its
/// beginning, "..." and its end.
/// @param most  bytes, about
std::string brief(std::string_view text, std::size_t most = 40);

/// The length of the well-formed character at the beginning of a text; 0 = none.
std::size_t characterLength(std::string_view text);

/// Whether a character is a blank outside ASCII: a no-break, thin or other special space.
bool isForeignBlank(std::string_view character);

} // namespace korvana
