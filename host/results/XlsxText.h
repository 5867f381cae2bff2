#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace korvana {

/// The most characters (UTF-16 units) that a cell of a workbook holds.
inline constexpr std::size_t mostCellCharacters = 32767;

/// A text as the file of a workbook has it: on one line, and where it reads like one of the format's escapes,
/// such as _x0041_, with its first sign escaped. One that a cell does not hold is cut and ends with an
/// ellipsis.
[[nodiscard]] std::string xlsxText(std::string_view text);

/// Whether `xlsxText` cuts the text.
[[nodiscard]] bool isCutInXlsx(std::string_view text);

} // namespace korvana
