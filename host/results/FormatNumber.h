#pragma once

#include <cstdint>
#include <string>

#include "support/services/SheetService.h"

namespace korvana {

/// Numbers as text, the same in every locale: the decimal mark is a point and digits are never grouped.

/// A short text that reads back as the same double, for data files: a whole number below 1e15 in plain
/// digits, any other in the fewest characters. "nan", "inf", "-inf" where not finite.
void appendNumber(std::string& out, double value);
void appendNumber(std::string& out, std::int32_t value);
[[nodiscard]] std::string formatNumber(double value);

/// For people, in the given format; `General` shows a whole number in full. Whole numbers and fixed decimals
/// of 1e15 and more (where a double has no decimals left to show) are written with an exponent; a zero never
/// carries a sign.
void appendNumber(std::string& out, double value, ozm::CellFormat format);
[[nodiscard]] std::string formatNumber(double value, ozm::CellFormat format);

/// Magnitude from which numbers have an exponent even if they are whole, `Fixed` or `Integer`.
inline constexpr double exponentFrom = 1e15;

} // namespace korvana
