#pragma once

#include <string>

#include "support/services/SheetService.h"

namespace korvana {

/// Numbers as text, the same in every locale: the decimal mark is a point and digits are never grouped.

/// The shortest text that reads back as the same double: for data files. "nan", "inf", "-inf" where not
/// finite.
void appendNumber(std::string& out, double value);
[[nodiscard]] std::string formatNumber(double value);

/// For people, in the given format. Whole numbers and fixed decimals of 1e15 and more (where a double has no
/// decimals left to show) are written with an exponent; a zero never carries a sign.
void appendNumber(std::string& out, double value, ozm::CellFormat format);
[[nodiscard]] std::string formatNumber(double value, ozm::CellFormat format);

/// Magnitude from which `Fixed` and `Integer` fall back to the exponent form.
inline constexpr double exponentFrom = 1e15;

} // namespace korvana
