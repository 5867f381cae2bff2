#pragma once

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

#include "host/results/ResultsBook.h"

namespace korvana {

struct HtmlOptions {
    std::size_t mostRows = 2000; ///< of a table; a line says how many there are and where the rest is
    /// The data file of each spreadsheet, in their order, to be named there; may be empty.
    std::vector<std::string> tableFiles;
};

/// The whole book as one self-contained page (UTF-8, no scripts, nothing loaded from elsewhere), which is
/// also well formed XML: messages, the first report, charts as SVG, then everything else, what is long
/// folded; light and dark, and printable. A chart that cannot be drawn is replaced by the reason; the page
/// itself does not fail for it. Returns the reasons.
std::vector<std::string> writeHtml(const ResultsBook& book, std::ostream& out,
                                   const HtmlOptions& options = {});

} // namespace korvana
