#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <vector>

#include "apps/desktop/results/ChartEdits.h"
#include "host/results/ResultsBook.h"
#include "host/results/WriteBook.h"

namespace korvana::desktop {

/// The formats one output can be written in, the most fitting first.
[[nodiscard]] std::vector<OutputFormat> formatsOf(const ResultsBook::Output& output);

/// The ending of a format's files, without a point.
[[nodiscard]] const char* endingOf(OutputFormat format);

/// Writes one output into one file. `chart` stands in for a chart as the book has it (edited, zoomed),
/// nullptr: the book's. Throws `std::runtime_error` naming the file and the reason, `std::bad_alloc` when a
/// copy of the output finds no room; no file is left then.
void exportOutput(const ResultsBook& book, std::size_t place, const Chart* chart, OutputFormat format,
                  const std::filesystem::path& target);

/// The book with its charts as the user has edited them, and without the outputs that were removed (both by
/// their place, the latter ascending). Copies everything.
[[nodiscard]] ResultsBook withEdits(const ResultsBook& book, const std::map<std::size_t, ChartEdits>& edits,
                                    const std::vector<std::size_t>& removed = {});

/// The names of the files that `writeBook` writes for what `withEdits` answers, without making it.
[[nodiscard]] std::vector<std::string> filesToWrite(const ResultsBook& book,
                                                    const std::map<std::size_t, ChartEdits>& edits,
                                                    const std::vector<std::size_t>& removed,
                                                    FormatSet formats);

} // namespace korvana::desktop
