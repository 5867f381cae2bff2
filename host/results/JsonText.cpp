#include "host/results/JsonText.h"

#include <array>
#include <cmath>
#include <cstdio>

#include "host/results/FormatNumber.h"
#include "host/results/Utf8.h"

namespace korvana {

JsonText& JsonText::string(std::string_view text) {
    raw("\"");
    const auto isEscaped = [](char c) { return c == '"' || c == '\\'; };
    for (movePlain(text, pieces_.text(), isEscaped); !text.empty();
         movePlain(text, pieces_.text(), isEscaped))
        appendCharacter(takeCodePoint(text));
    return raw("\"");
}

JsonText& JsonText::number(double value) {
    if (std::isfinite(value)) {
        appendNumber(pieces_.text(), value);
    } else {
        pieces_.text() += "null";
    }
    return raw({});
}

JsonText& JsonText::number(std::int32_t value) {
    appendNumber(pieces_.text(), value);
    return raw({});
}

void JsonText::appendCharacter(char32_t code) {
    std::string& text = pieces_.text();
    if (code == '"' || code == '\\') {
        text += '\\';
        text += static_cast<char>(code);
    } else if (code == '\n') {
        text += "\\n";
    } else if (code == '\t') {
        text += "\\t";
    } else if (isControl(code)) {
        std::array<char, 8> escape{};
        std::snprintf(escape.data(), escape.size(), "\\u%04x", static_cast<unsigned>(code));
        text += escape.data();
    } else {
        appendCodePoint(text, code);
    }
}

} // namespace korvana
