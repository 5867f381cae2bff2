#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace korvana {

/// Texts come to the writers from files of any origin; none may break a document.

inline constexpr char32_t replacementCharacter = 0xFFFD;

/// Takes one code point off the front of a text that is not empty. Bytes that are not UTF-8 (also overlong
/// forms and surrogates) give U+FFFD, one per byte.
[[nodiscard]] char32_t takeCodePoint(std::string_view& text);
void appendCodePoint(std::string& out, char32_t code);

/// Whether a byte is a printable character of ASCII, which most texts consist of.
[[nodiscard]] constexpr bool isPlain(char byte) {
    return byte >= 0x20 && byte < 0x7F;
}
/// Moves the plain bytes at the front, up to the first that is special, to the end of `out`, all at once.
template <class IsSpecial>
void movePlain(std::string_view& text, std::string& out, IsSpecial isSpecial) {
    const auto end =
        std::find_if(text.begin(), text.end(), [&](char byte) { return !isPlain(byte) || isSpecial(byte); });
    out.append(text.begin(), end);
    text.remove_prefix(static_cast<std::size_t>(end - text.begin()));
}

/// Whether a code point is a control character: C0, DEL, C1 (line ends and tabs included).
[[nodiscard]] constexpr bool isControl(char32_t code) {
    return code < 0x20 || (code >= 0x7F && code < 0xA0);
}

/// Whether a code point, though no control character, is none of the characters of XML.
[[nodiscard]] constexpr bool isForbiddenInXml(char32_t code) {
    return code == 0xFFFE || code == 0xFFFF;
}

/// Valid UTF-8 on one line, of characters that XML has: every run of control characters becomes one blank,
/// another forbidden one U+FFFD.
void appendOneLine(std::string& out, std::string_view text);
[[nodiscard]] std::string oneLine(std::string_view text);
/// A title, the legend of a series or a message as people see it: on one line, without the blanks at its ends
/// that the texts of an analysis may have.
[[nodiscard]] std::string shownLine(std::string_view text);

/// Lengths as spreadsheet programs count them.
[[nodiscard]] std::size_t utf16Units(std::string_view text);
/// The text on one line, cut to its first `most` units.
[[nodiscard]] std::string oneLine(std::string_view text, std::size_t most);

/// Columns a text takes on a terminal: combining marks none, East Asian wide characters two.
[[nodiscard]] std::size_t textWidth(std::string_view text);

/// For element content and attributes of HTML and XML.
void appendEscaped(std::string& out, std::string_view text);
[[nodiscard]] std::string escaped(std::string_view text);

} // namespace korvana
