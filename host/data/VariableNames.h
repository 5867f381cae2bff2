#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace korvana {

/// Names for the columns of a table: the header cells; Var1, Var2, ... for columns without one; a repeated
/// name gets _2, _3, ... . Changes are reported in notes.
/// @param first  the first column that is a variable: it is number 1
std::vector<std::string> variableNames(const std::vector<std::string>& header, std::size_t columns,
                                       std::size_t first, std::vector<std::string>& notes);

} // namespace korvana
