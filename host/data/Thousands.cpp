#include "host/data/Thousands.h"

#include <cstddef>

namespace korvana {
namespace {

using namespace std::string_view_literals;

constexpr std::string_view signs[] = {
    ".",    ",",   "'", " ", "\xC2\xA0", "\xE2\x80\xAF", "\xE2\x80\x89", "\xE2\x80\x99",
    "\xA0", "\x92"}; // no-break and thin spaces and the curly apostrophe, in both codings

std::size_t digitsAt(std::string_view text) {
    const std::size_t end = text.find_first_not_of("0123456789"sv);
    return end == std::string_view::npos ? text.size() : end;
}

} // namespace

Thousands thousandsOf(std::string_view text) {
    if (text.starts_with('-') || text.starts_with('+')) text.remove_prefix(1);
    const std::size_t first = digitsAt(text);
    if (first == 0 || first > 3 || text.front() == '0') return Thousands::None;
    text.remove_prefix(first);
    std::string_view sign;
    for (const std::string_view each : signs)
        if (sign.empty() && text.starts_with(each)) sign = each;
    if (sign.empty()) return Thousands::None;
    while (text.starts_with(sign)) {
        text.remove_prefix(sign.size());
        if (digitsAt(text) != 3) return Thousands::None;
        text.remove_prefix(3);
    }
    if (text.empty()) return Thousands::Likely;
    const bool mark = text.front() == '.' || text.front() == ',';
    return mark && text.size() > 1 && digitsAt(text.substr(1)) == text.size() - 1 ? Thousands::Certain
                                                                                  : Thousands::None;
}

std::string withoutThousands(std::string_view text) {
    const std::size_t mark =
        thousandsOf(text) == Thousands::Certain ? text.find_last_of(".,") : std::string_view::npos;
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i)
        if ((text[i] >= '0' && text[i] <= '9') || i == mark || (i == 0 && (text[i] == '-'))) out += text[i];
    return out;
}

} // namespace korvana
