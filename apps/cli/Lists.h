#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace korvana::cli {

/// "a,b" as {"a", "b"}, blanks around them dropped; an entry with a comma stands in double quotes, its
/// own double quotes doubled; an empty entry is a UsageError that names the option.
std::vector<std::string> splitList(std::string_view option, std::string_view list);

/// The places of the listed names among the known ones, each once, in the order of the known ones; "all"
/// means all of them. A UsageError names the unknown ones and lists the known ones.
std::vector<std::size_t> chooseFrom(std::string_view option, std::string_view list,
                                    const std::vector<std::string_view>& known);

/// "a, b and c"
std::string joined(const std::vector<std::string>& words);

} // namespace korvana::cli
