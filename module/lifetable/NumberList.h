#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ozm::survival {

/// Numbers from a text, separated by blanks or commas.
struct NumberList {
    std::vector<double> numbers;
    std::string bad; ///< the first word that is no number, or one that is not accepted; empty: none

    template <class Accept>
    static NumberList Of(std::string_view text, Accept accept);

private:
    static constexpr std::string_view separators = " ,;\t\r\n";
    /// False unless the whole word is a number.
    static bool Read(std::string_view word, double& number);
};

template <class Accept>
NumberList NumberList::Of(std::string_view text, Accept accept) {
    NumberList list;
    for (std::size_t at = text.find_first_not_of(separators); at != std::string_view::npos;) {
        const std::string_view word = text.substr(at, text.find_first_of(separators, at) - at);
        double number = 0.0;
        if (!Read(word, number) || !accept(number)) {
            list.bad = word;
            break;
        }
        list.numbers.push_back(number);
        at = text.find_first_not_of(separators, at + word.size());
    }
    return list;
}

} // namespace ozm::survival
