#pragma once

#include <cstdint>
#include <limits>
#include <string>

namespace korvana {

/// Where a cell stands, and what stands there, for messages.
struct CellPlace {
    std::int64_t line = std::numeric_limits<std::int64_t>::max(); ///< none: the greatest
    std::string text;
};

/// The cell, and the blank in it that looks like any other.
std::string quoted(const CellPlace& place);

/// The same with its line.
std::string inLine(const CellPlace& place);

} // namespace korvana
