#pragma once

#include <filesystem>

#include "host/results/OutputFile.h"
#include "host/results/ResultsBook.h"

namespace korvana {

/// One workbook: a sheet "Report" with all text (report lines, messages, chart titles), then a sheet per
/// table with its title, notes and headings above the rows, and footnotes below them. A table longer than a
/// sheet can be continues on further sheets. Numbers keep full precision and show the column's format. Rows
/// are streamed. Throws `std::runtime_error` naming the file when it cannot be written; then no file is left.
void writeXlsx(const ResultsBook& book, const std::filesystem::path& target);
/// The same into a file that the caller commits.
void writeXlsx(const ResultsBook& book, const PendingFile& pending);

} // namespace korvana
