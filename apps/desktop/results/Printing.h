#pragma once

#include <QString>
#include <string>
#include <variant>
#include <vector>

#include "host/results/ResultsBook.h"

class QPrinter;

namespace korvana::desktop {

/// Rows of a table that are printed; a longer table says how many more there are.
inline constexpr std::size_t mostPrintedRows = 2000;

using PrintItem =
    std::variant<std::vector<std::string>, Chart>; ///< lines of text in a fixed-width font, or a chart

/// The output as it is printed.
[[nodiscard]] PrintItem printItem(const ResultsBook::Output& output);

/// Prints the items one below the other, with `title` and the page number at the foot of each page. Lines too
/// long for the paper are printed smaller, and broken where that is not enough. Colours are those for a light
/// background. False when the printer cannot be used.
bool print(QPrinter& printer, const std::vector<PrintItem>& items, const QString& title);

} // namespace korvana::desktop
