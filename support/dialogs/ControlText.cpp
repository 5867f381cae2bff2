#include "support/dialogs/DialogTemplate.h"

#include "support/dialogs/ControlText.h"

#include <cctype>

namespace ozm {
namespace {

bool isDigit(char c) {
    return std::isdigit(static_cast<unsigned char>(c)) != 0;
}

} // namespace

ControlText ParseControlText(std::string_view text) {
    ControlText parts;
    if (text.starts_with('!')) {
        std::size_t end = 1;
        // Icon numbers have at most three digits: what follows may itself begin with a digit.
        while (end < text.size() && end <= 3 && isDigit(text[end])) {
            parts.icon = parts.icon * 10 + (text[end] - '0');
            ++end;
        }
        parts.text = end > 1 ? text.substr(end) : text;
        return parts;
    }
    const bool lettered = text.size() > 1 && std::islower(static_cast<unsigned char>(text[0])) != 0 &&
                          std::isupper(static_cast<unsigned char>(text[1])) != 0;
    if (lettered) parts.iconLetter = text[0];
    parts.text = text.substr(lettered ? 1 : 0);
    return parts;
}

std::string PlainControlText(std::string_view controlText) {
    const std::string_view text = ParseControlText(controlText).text;
    std::string label;
    for (std::size_t place = 0; place < text.size(); ++place) {
        if (text[place] == '&' && ++place == text.size()) break; // "&&" is an ampersand
        if (text[place] == ' ' && (label.empty() || label.back() == ' ')) continue;
        label += text[place];
    }
    while (!label.empty() && (label.back() == ' ' || label.back() == ':'))
        label.pop_back();
    return label;
}

std::string QuotedControl(const ControlTemplate& control) {
    const std::string text = PlainControlText(control.text);
    return text.empty() ? "control " + std::to_string(control.id) : "'" + text + "'";
}

} // namespace ozm
