#pragma once

#include <optional>

namespace korvana {

enum class HeaderLine { Automatic, Yes, No };

/// The order of the parts of a date.
enum class DateOrder { DayMonthYear, MonthDayYear, YearMonthDay };

/// What a user gave about the layout of a file; what was left to be detected is automatic or empty.
struct ReadSettings {
    HeaderLine header = HeaderLine::Automatic;
    std::optional<char> separator;   ///< between cells
    std::optional<char> decimalMark; ///< . or ,
    std::optional<DateOrder> dates;
};

} // namespace korvana
