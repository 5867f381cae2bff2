#pragma once

#include <ostream>

#include "host/results/ResultsBook.h"

namespace korvana {

struct TextOptions {
    bool messages = true;   ///< off where they go elsewhere, as on the command line
    bool iterations = true; ///< the protocol of an iterative fit
};

/// The whole book as plain text for people (UTF-8): tables aligned, empty cells as "--". Tables are written
/// row by row. The stream's own failure state shows whether everything was written.
void writeText(const ResultsBook& book, std::ostream& out, const TextOptions& options = {});

/// One table with its title, notes and headings.
void writeText(const Spreadsheet& sheet, std::ostream& out);

/// "Error 14152: text", the form of messages everywhere.
[[nodiscard]] std::string messageText(const ResultMessage& message);

/// A chart in one line: its title, axes and series.
[[nodiscard]] std::string chartLine(const ozm::CChartInfo& info);

} // namespace korvana
