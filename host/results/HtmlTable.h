#pragma once

#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>

#include "host/results/Spreadsheet.h"

namespace korvana {

struct HtmlTableOptions {
    std::size_t mostRows = 2000; ///< the others are left out
    /// An attribute of the cells that hold texts.
    std::string_view textCells = R"( class="text")";
};

/// "1,234,567"
[[nodiscard]] std::string groupedDigits(std::size_t number);

/// The element <table> with a spreadsheet's headings and rows, well formed as XML.
void writeHtmlTable(const Spreadsheet& sheet, std::ostream& out, const HtmlTableOptions& options = {});

/// A spreadsheet for a page of others, such as a notebook, with its title and notes, without a style sheet.
/// @param rest  where all rows are, for the line below a table with more than `mostRows`
void writeHtmlFragment(const Spreadsheet& sheet, std::ostream& out, std::size_t mostRows,
                       std::string_view rest);

} // namespace korvana
