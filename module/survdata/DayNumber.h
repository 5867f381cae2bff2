#pragma once

namespace ozm::survival {

/// What `DayNumber` returns for an invalid date; no date has this day number.
inline constexpr double invalidDay = -8.88e-36;

/// Julian day number of a date of the Gregorian calendar (Julian before 15 October 1582). Invalid are year 0
/// and a month outside 1..12; a year below 0 counts from 1 BC. The day is not tested: 32 January is 1
/// February. Products with the mean lengths of year and month are formed in single precision (after Press et
/// al., Numerical Recipes, julday).
double DayNumber(int month, int day, int year);

} // namespace ozm::survival
