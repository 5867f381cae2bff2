#pragma once

#include <ostream>

#include "host/results/Spreadsheet.h"

namespace korvana {

/// One table as CSV (RFC 4180: comma, CRLF, quotes doubled; UTF-8 without a mark). The first record holds the
/// headings, both lines joined; equal headings get a number, and row headings come first under
/// "Row". Numbers at full precision, empty cells empty. Rows are streamed.
void writeCsv(const Spreadsheet& sheet, std::ostream& out);

} // namespace korvana
