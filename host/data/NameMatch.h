#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace korvana {

/** Without regard to the case of ASCII letters. */
bool equalIgnoringCase(std::string_view a, std::string_view b);

/** The candidates nearest to a misspelt name by edit distance (letter case counts nothing, swapped neighbours
   count one), nearest first, at most the given number. Candidates that share too little with the name are
   left out. */
std::vector<std::string> nearestOf(std::string_view name, const std::vector<std::string_view>& candidates,
                                   std::size_t most);

/** " (did you mean 'a', 'b'?)", or empty without names. */
std::string didYouMean(const std::vector<std::string>& names);

} // namespace korvana
