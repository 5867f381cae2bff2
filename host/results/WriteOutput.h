#pragma once

#include <cstddef>
#include <filesystem>
#include <vector>

#include "host/results/ResultsBook.h"
#include "host/results/WriteBook.h"

namespace korvana {

/// The formats in which an output can be written, the most suitable first.
[[nodiscard]] std::vector<OutputFormat> formatsOf(const ResultsBook::Output& output);

/// The file name extension of a format, without the dot.
[[nodiscard]] const char* endingOf(OutputFormat format);

/// Writes one output into one file. `chart` replaces the chart in the book (when edited or zoomed); nullptr:
/// the book's. Throws `std::runtime_error` naming the file and the reason, `std::bad_alloc` when memory is
/// short for a copy of the output; no file is left then.
void writeOutput(const ResultsBook& book, std::size_t place, const Chart* chart, OutputFormat format,
                 const std::filesystem::path& target);

/// Writes a whole book into one file: JSON, text, HTML, XLSX, or a script that makes it again; the other
/// formats hold one output. Throws as above.
void writeOneFile(const ResultsBook& book, OutputFormat format, const std::filesystem::path& target);

} // namespace korvana
