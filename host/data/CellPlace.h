#pragma once

#include <cstdint>
#include <limits>
#include <string>

namespace korvana {

/// A cell's place and content, for messages.
struct CellPlace {
    std::int64_t line = std::numeric_limits<std::int64_t>::max(); ///< none: the greatest
    std::string text;
};

/// The cell in quotes; an unusual blank in it is named.
std::string quoted(const CellPlace& place);

/// The same with its line.
std::string inLine(const CellPlace& place);

} // namespace korvana
