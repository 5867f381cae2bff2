#include "host/results/JsonText.h"

#include <array>
#include <cmath>
#include <cstdio>

#include "host/results/FormatNumber.h"
#include "host/results/Utf8.h"

namespace korvana {

JsonText& JsonText::string(std::string_view text) {
    text_ += '"';
    const auto isEscaped = [](char c) { return c == '"' || c == '\\'; };
    for (movePlain(text, text_, isEscaped); !text.empty(); movePlain(text, text_, isEscaped))
        appendCharacter(takeCodePoint(text));
    return raw("\"");
}

JsonText& JsonText::number(double value) {
    if (std::isfinite(value)) {
        appendNumber(text_, value);
    } else {
        text_ += "null";
    }
    return raw({});
}

JsonText& JsonText::number(std::int32_t value) {
    appendNumber(text_, value);
    return raw({});
}

void JsonText::flush() {
    out_.write(text_.data(), static_cast<std::streamsize>(text_.size()));
    text_.clear();
}

void JsonText::appendCharacter(char32_t code) {
    if (code == '"' || code == '\\') {
        text_ += '\\';
        text_ += static_cast<char>(code);
    } else if (code == '\n') {
        text_ += "\\n";
    } else if (code == '\t') {
        text_ += "\\t";
    } else if (isControl(code)) {
        std::array<char, 8> escape{};
        std::snprintf(escape.data(), escape.size(), "\\u%04x", static_cast<unsigned>(code));
        text_ += escape.data();
    } else {
        appendCodePoint(text_, code);
    }
}

} // namespace korvana
