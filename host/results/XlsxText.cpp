#include "host/results/XlsxText.h"

#include <algorithm>

#include "host/results/Utf8.h"

namespace korvana {
namespace {

constexpr std::string_view escapedUnderscore = "_x005F_";
constexpr std::string_view ellipsis = "\u2026";

/// _xHHHH_, which programs read as the character of that number.
bool beginsLikeEscape(std::string_view text) {
    constexpr std::size_t length = 7;
    return text.size() >= length && text.starts_with("_x") && text[length - 1] == '_' &&
           text.substr(2, 4).find_first_not_of("0123456789abcdefABCDEF") == std::string_view::npos;
}

/// As many characters as there is room for; the rest stays in `line`.
std::string taken(std::string_view& line, std::size_t room) {
    std::string out;
    std::size_t units = 0;
    while (!line.empty()) {
        std::string_view rest = line;
        const char32_t code = takeCodePoint(rest);
        const bool escape = beginsLikeEscape(line);
        units += escape ? escapedUnderscore.size() : code > 0xFFFF ? 2U : 1U;
        if (units > room) break;
        if (escape)
            out += escapedUnderscore;
        else
            appendCodePoint(out, code);
        line = rest;
    }
    return out;
}

} // namespace

std::string xlsxText(std::string_view text) {
    std::string line = oneLine(text);
    if (line.size() <= mostCellCharacters && line.find("_x") == std::string::npos) return line;
    std::string_view rest = line;
    std::string out = taken(rest, mostCellCharacters);
    if (rest.empty()) return out;
    rest = line;
    return taken(rest, mostCellCharacters - utf16Units(ellipsis)).append(ellipsis);
}

bool isCutInXlsx(std::string_view text) {
    // Escapes make a text longer.
    if (text.size() <= mostCellCharacters && text.find("_x") == std::string_view::npos) return false;
    const std::string line = oneLine(text);
    std::string_view rest = line;
    (void)taken(rest, mostCellCharacters);
    return !rest.empty();
}

} // namespace korvana
