#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace korvana {

/// Without regard to the case of ASCII letters.
bool equalIgnoringCase(std::string_view a, std::string_view b);

/// The candidates of which a name may be a misspelling, by edit distance (ignoring letter case, swapped
/// neighbours count one; one error per three letters), nearest first, then those that begin with the name or
/// that it begins with, else those that begin with it except for one error; at most the given number.
std::vector<std::string> nearestOf(std::string_view name, const std::vector<std::string_view>& candidates,
                                   std::size_t most);

/// The candidates that begin with a name of at least two letters; else the nearest one.
std::vector<std::string> completionsOf(std::string_view name,
                                       const std::vector<std::string_view>& candidates);

/// " (did you mean 'a', 'b'?)", or empty without names.
std::string didYouMean(const std::vector<std::string>& names);

} // namespace korvana
