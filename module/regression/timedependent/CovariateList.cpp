#include "module/regression/timedependent/CovariateList.h"

#include "support/CAnalysisSupport.h"

#include <algorithm>

namespace ozm::survival {
namespace {

bool StartsCharacter(char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
}

/// Whether a character of UTF-8 is a blank, of any width, or the mark of UTF-8: initialisation files do not
/// keep these at the ends of a text.
bool IsBlank(std::string_view character) {
    constexpr std::string_view others[] = {
        " ", "\xC2\xA0", "\xE2\x80\xAF", "\xE2\x81\x9F", "\xE3\x80\x80", "\xEF\xBB\xBF"};
    return std::ranges::find(others, character) != std::end(others) ||
           (character.starts_with("\xE2\x80") && character >= "\xE2\x80\x80" && character <= "\xE2\x80\x8B");
}

std::string_view Trimmed(std::string_view text) {
    while (!text.empty()) {
        const auto next = std::ranges::find_if(text.substr(1), StartsCharacter) - text.begin();
        if (!IsBlank(text.substr(0, static_cast<std::size_t>(next)))) break;
        text.remove_prefix(static_cast<std::size_t>(next));
    }
    while (!text.empty()) {
        std::size_t last = text.size() - 1;
        while (last > 0 && !StartsCharacter(text[last]))
            --last;
        if (!IsBlank(text.substr(last))) break;
        text = text.substr(0, last);
    }
    return text;
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
    return std::string{Trimmed(text.substr(0, end))};
}

std::string CleanText(std::string_view text) {
    std::string clean{text};
    CAnalysisSupport::Replace8CharGrow(clean, '\t', " ");
    // What is left of two codes may be a third.
    for (std::size_t before = clean.size() + 1; clean.size() < before;) {
        before = clean.size();
        CAnalysisSupport::StripFormatting(clean);
    }
    return std::string{Trimmed(clean)};
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
