#include "host/data/TextEncoding.h"

#include <algorithm>
#include <array>

namespace korvana {
namespace {

unsigned byteAt(std::string_view text, std::size_t i) {
    return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U;
}

/// The length of the well-formed sequence at i (Unicode standard, table 3-7), 0 = none.
std::size_t sequenceLength(std::string_view text, std::size_t i) {
    const unsigned first = byteAt(text, i);
    if (first < 0x80) return 1;
    const unsigned second = byteAt(text, i + 1);
    const auto trails = [&](std::size_t at) { return (byteAt(text, at) & 0xC0U) == 0x80; };
    if (first >= 0xC2 && first <= 0xDF) return trails(i + 1) ? 2 : 0;
    if (first >= 0xE0 && first <= 0xEF) {
        const bool range = (first != 0xE0 || second >= 0xA0) && (first != 0xED || second <= 0x9F);
        return range && trails(i + 1) && trails(i + 2) ? 3 : 0;
    }
    if (first >= 0xF0 && first <= 0xF4) {
        const bool range = (first != 0xF0 || second >= 0x90) && (first != 0xF4 || second <= 0x8F);
        return range && trails(i + 1) && trails(i + 2) && trails(i + 3) ? 4 : 0;
    }
    return 0;
}

void append(std::string& out, unsigned code) {
    if (code < 0x80) {
        out += static_cast<char>(code);
    } else if (code < 0x800) {
        out += static_cast<char>(0xC0U | (code >> 6U));
        out += static_cast<char>(0x80U | (code & 0x3FU));
    } else {
        out += static_cast<char>(0xE0U | (code >> 12U));
        out += static_cast<char>(0x80U | ((code >> 6U) & 0x3FU));
        out += static_cast<char>(0x80U | (code & 0x3FU));
    }
}

constexpr std::string_view hexDigits = "0123456789ABCDEF";
constexpr unsigned replacement = 0xFFFD;

// Windows-1252, 0x80 to 0x9F; the five bytes that it leaves out become the replacement character.
constexpr std::array<unsigned, 32> windows1252{
    0x20AC,      replacement, 0x201A, 0x0192, 0x201E, 0x2026,      0x2020, 0x2021,
    0x02C6,      0x2030,      0x0160, 0x2039, 0x0152, replacement, 0x017D, replacement,
    replacement, 0x2018,      0x2019, 0x201C, 0x201D, 0x2022,      0x2013, 0x2014,
    0x02DC,      0x2122,      0x0161, 0x203A, 0x0153, replacement, 0x017E, 0x0178};

unsigned codeOfWindows1252(unsigned byte) {
    return byte >= 0x80 && byte < 0xA0 ? windows1252[byte - 0x80] : byte;
}

} // namespace

bool isUtf8(std::string_view text) {
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t length = sequenceLength(text, i);
        if (length == 0) return false;
        i += length;
    }
    return true;
}

std::string toUtf8(std::string_view text) {
    return isUtf8(text) ? std::string(text) : fromWindows1252(text);
}

std::string fromWindows1252(std::string_view text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i)
        append(out, codeOfWindows1252(byteAt(text, i)));
    return out;
}

std::optional<std::string> toWindows1252(std::string_view text) {
    std::string out;
    while (!text.empty()) {
        const std::string_view character = text.substr(0, characterLength(text));
        if (character.empty()) return std::nullopt;
        unsigned byte = character.size() == 1 ? byteAt(character, 0) : 0x80;
        const auto differs = [character](unsigned candidate) {
            std::string other;
            append(other, codeOfWindows1252(candidate));
            return other != character;
        };
        while (byte >= 0x80 && byte <= 0xFF && (codeOfWindows1252(byte) == replacement || differs(byte)))
            ++byte;
        if (byte > 0xFF) return std::nullopt;
        out += static_cast<char>(byte);
        text.remove_prefix(character.size());
    }
    return out;
}

std::optional<unsigned char> byteOfNoCharacter(std::string_view text) {
    if (isUtf8(text)) return std::nullopt;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const unsigned byte = byteAt(text, i);
        if (byte >= 0x80 && byte < 0xA0 && windows1252[byte - 0x80] == replacement)
            return static_cast<unsigned char>(byte);
    }
    return std::nullopt;
}

std::string noCharacter(unsigned char byte) {
    return std::string("is neither UTF-8 nor Windows-1252 (byte ") + hexDigits[byte / 16U] +
           hexDigits[byte % 16U] + "); save the file as UTF-8";
}

std::size_t characterLength(std::string_view text) {
    return text.empty() ? 0 : sequenceLength(text, 0);
}

bool isForeignBlank(std::string_view character) {
    if (character == "\xC2\xA0" || character == "\xE2\x80\xAF" || character == "\xE2\x81\x9F" ||
        character == "\xE3\x80\x80" || character == "\xEF\xBB\xBF")
        return true;
    return character.size() == 3 && character.starts_with("\xE2\x80") && byteAt(character, 2) <= 0x8B;
}

std::string withEscapes(std::string_view text) {
    std::string out;
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t length = sequenceLength(text, i);
        const unsigned byte = byteAt(text, i);
        const bool high = length == 2 && byte == 0xC2 && byteAt(text, i + 1) < 0xA0; // U+0080 to U+009F
        if (length > 0 && byte >= 0x20 && byte != 0x7F && !high) {
            out += text.substr(i, length);
        } else if (byte == '\n' || byte == '\t' || byte == '\r') {
            out.append(byte == '\n' ? "\\n" : byte == '\t' ? "\\t" : "\\r");
        } else {
            const unsigned code = high ? byteAt(text, i + 1) : byte;
            out.append("\\x").append(1, hexDigits[code / 16]).append(1, hexDigits[code % 16]);
        }
        i += std::max<std::size_t>(length, 1);
    }
    return out;
}

std::string brief(std::string_view text, std::size_t most) {
    // A text that cannot be Windows-1252 either is shown byte by byte.
    const std::string out = withEscapes(byteOfNoCharacter(text) ? std::string(text) : toUtf8(text));
    if (out.size() <= most) return out;
    const auto inside = [&out](std::size_t at) { return (byteAt(out, at) & 0xC0U) == 0x80; };
    std::size_t head = most - most / 4;
    std::size_t tail = out.size() - most / 4;
    while (head > 0 && inside(head))
        --head;
    while (tail < out.size() && inside(tail))
        ++tail;
    return out.substr(0, head) + "..." + out.substr(tail);
}

} // namespace korvana
