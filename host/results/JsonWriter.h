#pragma once

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "host/results/ResultsBook.h"

namespace korvana {

/// The first member of every results.json, and the number of the format, which grows when a member is removed
/// or changes its meaning. docs/results-json.md describes it, docs/results.schema.json checks it.
inline constexpr std::string_view resultsFormat = "korvana-results";
inline constexpr int resultsFormatVersion = 1;

/// Everything in the book as one JSON object (UTF-8), numbers at full double precision; empty cells and
/// numbers that are not finite are null. Rows are streamed. The same results give the same text, as it has no
/// time of day.
/// @param files  the names of the files written together, this one included
void writeJson(const ResultsBook& book, std::ostream& out, const std::vector<std::string>& files = {});

/// Only the head of a results.json: format, program and files.
void writeFileList(const std::vector<std::string>& files, std::ostream& out);

} // namespace korvana
