#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace korvana {

/// Without regard to the case of ASCII letters.
bool equalIgnoringCase(std::string_view a, std::string_view b);

/// The candidates for which a name may be misspelt, by edit distance (letter case counts nothing, swapped
/// neighbours count one; one slip in three letters), nearest first, then those that begin with the name or
/// with which it begins, else those that begin with it but for one slip; at most the given number.
std::vector<std::string> nearestOf(std::string_view name, const std::vector<std::string_view>& candidates,
                                   std::size_t most);

/// The candidates of which a name, of two letters at least, is the beginning; else the nearest one.
std::vector<std::string> completionsOf(std::string_view name,
                                       const std::vector<std::string_view>& candidates);

/// " (did you mean 'a', 'b'?)", or empty without names.
std::string didYouMean(const std::vector<std::string>& names);

} // namespace korvana
