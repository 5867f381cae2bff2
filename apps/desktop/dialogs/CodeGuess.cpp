#include "apps/desktop/dialogs/CodeGuess.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

namespace korvana::desktop {
namespace {

constexpr int neither = -1;

using Fields = std::array<const ozm::ControlTemplate*, 2>;

bool isLetter(char c) {
    // Letters beyond ASCII are several bytes, all above 127.
    return (c >= 'a' && c <= 'z') || static_cast<unsigned char>(c) > 127;
}

std::vector<std::string> wordsOf(std::string_view text) {
    std::vector<std::string> words(1);
    for (char c : text) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
        if (isLetter(c))
            words.back() += c;
        else if (!words.back().empty())
            words.emplace_back();
    }
    if (words.back().empty()) words.pop_back();
    return words;
}

template <class List>
bool sharesOne(const std::vector<std::string>& words, const List& list) {
    return std::any_of(words.begin(), words.end(), [&list](const std::string& word) {
        return std::find(std::begin(list), std::end(list), word) != std::end(list);
    });
}

/// The field that a text points to; neither when it points to none or both, or is a negation.
int fieldMeant(std::string_view text, const Fields& fields) {
    constexpr std::string_view denials[] = {"no", "not", "non", "never", "without", "free"};
    const std::vector<std::string> words = wordsOf(text);
    const bool first = sharesOne(words, fields[0]->codeWords);
    if (first == sharesOne(words, fields[1]->codeWords) || sharesOne(words, denials)) return neither;
    return first ? 0 : 1;
}

/// Which code, 0 or 1, means "yes" to the name of the variable; neither when none does.
int yes(const std::array<ozm::CodeCount, 2>& codes) {
    constexpr std::string_view affirmed[] = {"yes", "true"};
    for (int i = 0; i < 2; ++i)
        if (sharesOne(wordsOf(codes[static_cast<std::size_t>(i)].text), affirmed)) return i;
    const bool labelled = !codes[0].text.empty() || !codes[1].text.empty();
    return !labelled && codes[0].code == 0.0 && codes[1].code == 1.0 ? 1 : neither;
}

} // namespace

std::array<double, 2> guessCodes(const Fields& fields, const std::array<ozm::CodeCount, 2>& codes,
                                 std::string_view variable) {
    const std::array<double, 2> ascending{codes[0].code, codes[1].code};
    const std::array<double, 2> descending{codes[1].code, codes[0].code};
    const auto when = [&](bool lowerIsFirst) { return lowerIsFirst ? ascending : descending; };

    const int lower = fieldMeant(codes[0].text, fields);
    const int upper = fieldMeant(codes[1].text, fields);
    if (lower != upper) return when(lower == 0 || upper == 1);
    if (const int affirmed = yes(codes); affirmed != neither)
        if (const int field = fieldMeant(variable, fields); field != neither) return when(affirmed == field);
    for (std::size_t field = 0; field < 2; ++field)
        for (std::size_t code = 0; code < 2; ++code)
            if (fields[field]->usualCode == codes[code].code) return when(field == code);
    return ascending;
}

} // namespace korvana::desktop
