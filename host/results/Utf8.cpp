#include "host/results/Utf8.h"

#include <algorithm>
#include <array>
#include <utility>

namespace korvana {

char32_t takeCodePoint(std::string_view& text) {
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t length = lead < 0x80   ? 1
                               : lead < 0xC2 ? 0
                               : lead < 0xE0 ? 2
                               : lead < 0xF0 ? 3
                               : lead < 0xF5 ? 4
                                             : 0;
    char32_t code = length == 1 ? lead : lead & (0xFFU >> (length + 1));
    bool valid = length > 0 && length <= text.size();
    for (std::size_t i = 1; valid && i < length; ++i) {
        const auto next = static_cast<unsigned char>(text[i]);
        valid = (next & 0xC0U) == 0x80U;
        code = (code << 6U) | (next & 0x3FU);
    }
    const std::array<char32_t, 5> smallest{0, 0, 0x80, 0x800, 0x10000};
    valid = valid && code >= smallest[length] && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
    text.remove_prefix(valid ? length : 1);
    return valid ? code : replacementCharacter;
}

void appendCodePoint(std::string& out, char32_t code) {
    const auto byte = [&out](char32_t value) { out += static_cast<char>(static_cast<unsigned char>(value)); };
    if (code < 0x80) {
        byte(code);
    } else if (code < 0x800) {
        byte(0xC0U | (code >> 6U));
        byte(0x80U | (code & 0x3FU));
    } else if (code < 0x10000) {
        byte(0xE0U | (code >> 12U));
        byte(0x80U | ((code >> 6U) & 0x3FU));
        byte(0x80U | (code & 0x3FU));
    } else {
        byte(0xF0U | (code >> 18U));
        byte(0x80U | ((code >> 12U) & 0x3FU));
        byte(0x80U | ((code >> 6U) & 0x3FU));
        byte(0x80U | (code & 0x3FU));
    }
}

void appendOneLine(std::string& out, std::string_view text) {
    bool afterControl = false;
    while (!text.empty()) {
        if (isPlain(text.front())) {
            movePlain(text, out, [](char) { return false; });
            afterControl = false;
            continue;
        }
        const char32_t code = takeCodePoint(text);
        const bool control = isControl(code);
        if (!control) {
            appendCodePoint(out, isForbiddenInXml(code) ? replacementCharacter : code);
        } else if (!afterControl) {
            out += ' ';
        }
        afterControl = control;
    }
}

std::string oneLine(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    appendOneLine(out, text);
    return out;
}

std::string shownLine(std::string_view text) {
    std::string line = oneLine(text);
    line.erase(line.find_last_not_of(' ') + 1);
    line.erase(0, line.find_first_not_of(' '));
    return line;
}

std::size_t utf16Units(std::string_view text) {
    std::size_t units = 0;
    while (!text.empty())
        units += takeCodePoint(text) > 0xFFFF ? 2U : 1U;
    return units;
}

std::string oneLine(std::string_view text, std::size_t most) {
    std::string out;
    const std::string line = oneLine(text);
    std::string_view rest = line;
    std::size_t units = 0;
    while (!rest.empty()) {
        const char32_t code = takeCodePoint(rest);
        units += code > 0xFFFF ? 2 : 1;
        if (units > most) break;
        appendCodePoint(out, code);
    }
    return out;
}

std::size_t textWidth(std::string_view text) {
    using Span = std::pair<char32_t, char32_t>;
    static constexpr std::array<Span, 5> none{
        {{0x300, 0x36F}, {0x200B, 0x200F}, {0x20D0, 0x20FF}, {0xFE00, 0xFE0F}, {0xFEFF, 0xFEFF}}};
    static constexpr std::array<Span, 8> wide{{{0x1100, 0x115F},
                                               {0x2E80, 0xA4CF},
                                               {0xAC00, 0xD7A3},
                                               {0xF900, 0xFAFF},
                                               {0xFE30, 0xFE6F},
                                               {0xFF00, 0xFF60},
                                               {0x1F300, 0x1FAFF},
                                               {0x20000, 0x3FFFD}}};
    const auto within = [](const auto& spans, char32_t code) {
        return std::any_of(spans.begin(), spans.end(),
                           [code](const Span& span) { return code >= span.first && code <= span.second; });
    };
    std::size_t width = 0;
    while (!text.empty()) {
        if (static_cast<unsigned char>(text.front()) < 0x80) {
            ++width;
            text.remove_prefix(1);
            continue;
        }
        const char32_t code = takeCodePoint(text);
        if (code < 0x300) {
            ++width;
        } else if (!within(none, code)) {
            width += within(wide, code) ? 2U : 1U;
        }
    }
    return width;
}

void appendEscaped(std::string& out, std::string_view text) {
    const auto isMarkup = [](char c) { return c == '&' || c == '<' || c == '>' || c == '"' || c == '\''; };
    for (movePlain(text, out, isMarkup); !text.empty(); movePlain(text, out, isMarkup)) {
        const char32_t code = takeCodePoint(text);
        switch (code) {
        case '&':
            out += "&amp;";
            break;
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        case '"':
            out += "&quot;";
            break;
        case '\'':
            out += "&#39;";
            break;
        case '\n':
            out += '\n';
            break;
        default:
            if (isControl(code)) {
                out += ' ';
            } else {
                appendCodePoint(out, isForbiddenInXml(code) ? replacementCharacter : code);
            }
        }
    }
}

std::string escaped(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    appendEscaped(out, text);
    return out;
}

} // namespace korvana
