#pragma once

#include "host/data/ReadData.h"

#include <optional>
#include <string_view>

namespace korvana {

/// A text of the form of a date: three numbers with the same separator ( . / - ) between them, the year with
/// four digits first or last, or all three with at most two and the last with two. A time of day may follow.
struct DateText {
    int first = 0;
    int second = 0;
    int third = 0;
    bool yearFirst = false;  ///< the first has four digits: year, month, day
    bool shortYear = false;  ///< none has four; a year is one of 1900 to 1999
    bool timeOfDay = false;  ///< a time other than midnight follows
    bool noSuchTime = false; ///< 25:00
};

/// The parts of a text; nothing when it does not have the form of a date.
std::optional<DateText> readDateText(std::string_view text);

/// The Julian day number of a date that is read in an order; nothing when there is no such day, or the year
/// is not where the order expects it. A date with the year first has one reading only.
std::optional<int> dayNumberOf(const DateText& date, DateOrder order);

/// A date whose order is not known yet as one negative number, and back. The time of day is lost.
double packedDate(const DateText& date);
DateText unpackedDate(double packed);

} // namespace korvana
