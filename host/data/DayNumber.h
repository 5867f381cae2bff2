#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace korvana {

/// Reading a text as an ISO date, YYYY-MM-DD with exactly these digits (years 0000 to 9999).
struct IsoDate {
    bool hasForm = false;         ///< the text looks like a date
    std::optional<int> dayNumber; ///< none when there is no such day (1995-02-30)
};

/// The Julian day number of a date of the Gregorian calendar: 1970-01-01 is 2440588.
IsoDate readIsoDate(std::string_view text);

/// The same of year, month and day; nothing when there is no such day, or a year beyond 0 to 9999.
std::optional<int> dayNumberOf(int year, int month, int day);

/// The date of a Julian day number as YYYY-MM-DD; empty for a value that is not a whole day of the years 0 to
/// 9999.
std::string isoDateText(double dayNumber);

} // namespace korvana
