#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <vector>

#include "apps/desktop/results/ChartEdits.h"
#include "host/results/ResultsBook.h"
#include "host/results/WriteBook.h"

namespace korvana::desktop {

/// The formats in which an output can be written, the most suitable first.
[[nodiscard]] std::vector<OutputFormat> formatsOf(const ResultsBook::Output& output);

/// The file name extension of a format, without the dot.
[[nodiscard]] const char* endingOf(OutputFormat format);

/// Writes one output into one file. `chart` replaces the chart in the book (when edited or zoomed); nullptr:
/// the book's. Throws `std::runtime_error` naming the file and the reason, `std::bad_alloc` when memory is
/// short for a copy of the output; no file is left then.
void exportOutput(const ResultsBook& book, std::size_t place, const Chart* chart, OutputFormat format,
                  const std::filesystem::path& target);

/// A copy of the book with its charts as the user has edited them, and without the outputs that were removed
/// (both by their place, the latter ascending).
[[nodiscard]] ResultsBook withEdits(const ResultsBook& book, const std::map<std::size_t, ChartEdits>& edits,
                                    const std::vector<std::size_t>& removed = {});

/// The names of the files that `writeBook` writes for the result of `withEdits`, without making that.
[[nodiscard]] std::vector<std::string> filesToWrite(const ResultsBook& book,
                                                    const std::map<std::size_t, ChartEdits>& edits,
                                                    const std::vector<std::size_t>& removed,
                                                    FormatSet formats);

} // namespace korvana::desktop
