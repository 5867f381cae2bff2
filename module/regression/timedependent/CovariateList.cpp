#include "module/regression/timedependent/CovariateList.h"

#include <algorithm>

namespace ozm::survival {
namespace {

bool StartsCharacter(char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
}

bool IsBlank(char c) {
    return static_cast<unsigned char>(c) <= ' ';
}

char Lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

} // namespace

std::size_t CharactersOf(std::string_view text) {
    return static_cast<std::size_t>(std::ranges::count_if(text, StartsCharacter));
}

std::string CutTo(std::string_view text, std::size_t width) {
    std::size_t characters = 0;
    std::size_t end = 0;
    for (; end < text.size(); ++end)
        if (StartsCharacter(text[end]) && ++characters > width) break;
    return std::string{text.substr(0, end)};
}

std::string TrimmedText(std::string_view text) {
    while (!text.empty() && IsBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back()))
        text.remove_suffix(1);
    return std::string{text};
}

std::optional<std::size_t> FindDefined(std::span<const DefinedCovariate> list, std::string_view name) {
    const auto found = std::ranges::find_if(list, [name](const DefinedCovariate& each) {
        return std::ranges::equal(each.name, name, {}, Lower, Lower);
    });
    if (found == list.end()) return std::nullopt;
    return static_cast<std::size_t>(found - list.begin());
}

std::string ProposedName(std::span<const DefinedCovariate> list) {
    for (std::size_t number = 1;; ++number)
        if (const std::string name = "X_COV_" + std::to_string(number); !FindDefined(list, name)) return name;
}

} // namespace ozm::survival
