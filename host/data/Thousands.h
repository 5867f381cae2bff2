#pragma once

#include <string>
#include <string_view>

namespace korvana {

enum class Thousands {
    None,
    Likely, ///< digits in groups of three, with one sign between them: 1 200, 1'200, 1,234,567
    Certain ///< and a decimal mark: 1.200,5
};

/// Whether a text looks like a number whose thousands are separated, by a point, a comma, an apostrophe or a
/// blank.
Thousands thousandsOf(std::string_view text);

/// Such a number without the separators, for a message; the decimal mark is kept.
std::string withoutThousands(std::string_view text);

} // namespace korvana
