#pragma once

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

#include "host/results/ResultsBook.h"

namespace korvana {

struct HtmlOptions {
    /// Of a table; beyond this a line says how many rows there are and where the rest is.
    std::size_t mostRows = 2000;
    /// The data file of each spreadsheet, in order, to be named in that line; may be empty.
    std::vector<std::string> tableFiles;
};

/// The whole book as one self-contained page (UTF-8, no scripts, nothing loaded from elsewhere), which is
/// also well formed XML: messages, the first report, charts as SVG, then everything else, with long parts
/// folded; for light and dark screens, and printable. A chart that cannot be drawn is replaced by the reason.
/// Returns these reasons.
std::vector<std::string> writeHtml(const ResultsBook& book, std::ostream& out,
                                   const HtmlOptions& options = {});

} // namespace korvana
