#include "host/results/SheetNames.h"

#include <algorithm>
#include <cstddef>

#include "host/results/Utf8.h"

namespace korvana {
namespace {

constexpr std::size_t mostUnits = 31;
constexpr std::string_view ellipsis = "\u2026";

std::string folded(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return text;
}

/// Without forbidden characters, repeated blanks, and apostrophes at the beginning or end.
std::string legal(std::string_view title) {
    std::string name;
    for (char c : oneLine(title)) {
        if (std::string_view("[]:*?/\\").find(c) != std::string_view::npos) c = ' ';
        if (c != ' ' || !name.ends_with(' ')) name += c;
    }
    const std::size_t first = name.find_first_not_of(" '");
    if (first == std::string::npos) return {};
    return name.substr(first, name.find_last_not_of(" '") + 1 - first);
}

std::string shortened(const std::string& name, std::size_t most) {
    if (utf16Units(name) <= most) return name;
    std::string tail;
    if (const std::size_t comma = name.rfind(", "); comma != std::string::npos) tail = name.substr(comma);
    if (utf16Units(tail) > most / 2) tail.clear();
    const std::string whole = name.substr(0, name.size() - tail.size());
    std::string head = oneLine(whole, most - utf16Units(tail) - 1);
    if (head.size() < whole.size()) {
        const std::size_t blank = whole.rfind(' ', head.size());
        if (blank != std::string::npos && blank >= head.size() / 2) head.resize(blank);
    }
    return head + std::string(ellipsis) + tail;
}

} // namespace

std::string SheetNames::take(std::string_view title) {
    std::string stem = legal(title);
    if (stem.empty() || folded(stem) == "history") stem = "Table";
    std::string name = shortened(stem, mostUnits);
    for (int number = 2; !taken_.insert(folded(name)).second; ++number) {
        const std::string suffix = " " + std::to_string(number);
        name = shortened(stem, mostUnits - suffix.size()) + suffix;
    }
    return name;
}

} // namespace korvana
