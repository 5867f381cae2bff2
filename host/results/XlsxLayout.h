#pragma once

#include <cstddef>
#include <string_view>

#include "host/results/Spreadsheet.h"

namespace korvana {

/// The width in characters for a column of a workbook: enough for the cells (the first 500 from a row on) and
/// for the heading broken into lines; 8 to 60.
[[nodiscard]] std::size_t columnWidth(const Spreadsheet& sheet, std::size_t column, std::size_t firstRow);
[[nodiscard]] std::size_t rowHeadingWidth(const Spreadsheet& sheet, std::size_t firstRow);

/// How many lines a text takes when broken between words.
[[nodiscard]] std::size_t brokenLines(std::string_view text, std::size_t width);

} // namespace korvana
