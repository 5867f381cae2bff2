#pragma once

#include "host/data/ExpressionTokens.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string_view>

namespace korvana {

/// How to write dates in expressions, for error messages.
inline constexpr std::string_view dateIsWritten = "a date is written as 1995-01-15";

/// Something in an expression that is written like a date.
struct WrittenDate {
    std::size_t length = 0;
    bool foreign = false;         ///< in a form other than 1995-01-15 or 1995-1-15
    std::optional<int> dayNumber; ///< for the right form; none when there is no such day
};

/// The date at a place of an expression: three numbers without blanks. Nothing where it is arithmetic or
/// something else: 10-3-2, 1/2/3, or a factor, as in x/1995/1/15.
std::optional<WrittenDate> writtenDateAt(std::string_view expression, std::size_t at);

/// Refuses what would compute nonsense from dates: a date compared with a number that is no date, such as
/// 1995 - 1 - 15; such numbers in an expression with dates; a date as a factor. Throws ExpressionError.
/// @param tokens  of a valid expression
/// @param holdsDates  whether a name is that of a variable of dates
void checkDates(std::string_view expression, std::span<const Token> tokens,
                const std::function<bool(const Token&)>& holdsDates);

} // namespace korvana
