#pragma once

#include <string>

namespace korvana {

/// Numbers with a given count of digits, as std::to_chars writes them, digit for digit, but several times as
/// fast for those that tables are made of. Other numbers are left to it: then false, and nothing is appended.

/// As std::chars_format::fixed; a zero never carries a sign.
[[nodiscard]] bool appendFixed(std::string& out, double value, int decimals);

/// As std::chars_format::general; for numbers that need no exponent.
[[nodiscard]] bool appendGeneral(std::string& out, double value, int digits);

} // namespace korvana
