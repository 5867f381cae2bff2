#include "host/results/PythonText.h"

#include <charconv>
#include <cmath>
#include <limits>

#include "host/results/Utf8.h"

namespace korvana {
namespace {

constexpr std::size_t widest = 100; ///< columns of a line

/// Characters that are not seen, or that change how those around them are shown: a script must read as it
/// runs.
bool isUnseen(char32_t code) {
    struct Range {
        char32_t first;
        char32_t last;
    };
    constexpr Range unseen[] = {{0x7F, 0xA0},       {0xAD, 0xAD},       {0x61C, 0x61C},   {0x115F, 0x1160},
                                {0x180E, 0x180E},   {0x2000, 0x200F},   {0x2028, 0x202F}, {0x205F, 0x206F},
                                {0x3000, 0x3000},   {0x3164, 0x3164},   {0xE000, 0xF8FF}, {0xFE00, 0xFE0F},
                                {0xFEFF, 0xFEFF},   {0xFFA0, 0xFFA0},   {0xFFF0, 0xFFFB}, {0xFFFE, 0xFFFF},
                                {0xE0000, 0xE0FFF}, {0xF0000, 0x10FFFF}};
    for (const Range& range : unseen)
        if (code >= range.first && code <= range.last) return true;
    return code < 0x20;
}

void appendHex(std::string& out, char32_t code, int digits) {
    constexpr std::string_view hex = "0123456789abcdef";
    for (int place = digits - 1; place >= 0; --place)
        out += hex[(code >> (4U * static_cast<unsigned>(place))) & 0xFU];
}

void appendEscape(std::string& out, char32_t code) {
    if (code == '\n') {
        out += "\\n";
    } else if (code == '\t') {
        out += "\\t";
    } else if (code == '\r') {
        out += "\\r";
    } else if (code < 0x100) {
        appendHex(out += "\\x", code, 2);
    } else if (code < 0x10000) {
        appendHex(out += "\\u", code, 4);
    } else {
        appendHex(out += "\\U", code, 8);
    }
}

} // namespace

std::string pythonText(std::string_view text) {
    const bool single = text.find('"') != std::string_view::npos && text.find('\'') == std::string_view::npos;
    const char quote = single ? '\'' : '"';
    std::string out(1, quote);
    while (!text.empty()) {
        const char first = text.front();
        const std::size_t before = text.size();
        const char32_t code = takeCodePoint(text);
        if (code == replacementCharacter && before - text.size() == 1) { // the byte is not UTF-8
            constexpr char32_t surrogates = 0xDC00;
            appendHex(out += "\\u", surrogates + static_cast<unsigned char>(first), 4);
        } else if (isUnseen(code)) {
            appendEscape(out, code);
        } else {
            if (code == static_cast<char32_t>(quote) || code == '\\') out += '\\';
            appendCodePoint(out, code);
        }
    }
    return out + quote;
}

std::string pythonNumber(double value) {
    if (std::isnan(value)) return "float(\"nan\")";
    if (std::isinf(value)) return value > 0 ? "float(\"inf\")" : "float(\"-inf\")";
    char digits[32];
    const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    std::string number(digits, end);
    const bool looksWhole = number.find_first_of(".e") == std::string::npos;
    // An int has no -0, and a large one is none of C.
    const bool isWhole = std::abs(value) <= std::numeric_limits<int>::max() && number != "-0";
    return looksWhole && !isWhole ? number + ".0" : number;
}

std::string pythonBool(bool value) {
    return value ? "True" : "False";
}

std::string pythonList(const std::vector<std::string>& literals) {
    std::string list = "[";
    for (const std::string& literal : literals)
        list += (list.size() > 1 ? ", " : "") + literal;
    return list + "]";
}

std::string pythonList(std::string_view before, const std::vector<std::string>& literals) {
    std::string list = pythonList(literals);
    if (before.size() + textWidth(list) <= widest) return std::string{before} + list;
    constexpr std::string_view indent = "    ";
    list = std::string{before} + "[\n";
    std::string line{indent};
    for (const std::string& literal : literals) {
        if (line.size() > indent.size() && textWidth(line) + 1 + textWidth(literal) > widest) {
            list += line + "\n";
            line = indent;
        }
        line += (line.size() > indent.size() ? " " : "") + literal + ",";
    }
    return list + line + "\n]";
}

} // namespace korvana
