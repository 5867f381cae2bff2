#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace korvana {

enum class NumberForm {
    None,   ///< not a number: a text
    Finite, ///< a finite value; one too small for a double is 0
    TooBig  ///< infinite or beyond the range of a double
};

struct NumberText {
    NumberForm form = NumberForm::None;
    double value = 0;
};

/// Reads a whole text as a decimal number: optional sign, digits with an optional decimal mark, optional
/// exponent. Hexadecimal numbers, thousands separators and units are texts; "inf" and "infinity" are TooBig;
/// "nan" is a text. Does not depend on the locale.
NumberText readNumber(std::string_view text, char decimalMark = '.');

/// A short text that reads back as the same number: a whole number below 1e15 in plain digits, any other in
/// the fewest characters.
std::string numberText(double value);

/// The text without blanks, tabs and no-break or similar spaces at both ends.
std::string_view trimmed(std::string_view text);

} // namespace korvana
