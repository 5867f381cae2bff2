#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "apps/desktop/results/ChartEdits.h"
#include "host/results/ResultsBook.h"
#include "host/results/WriteOutput.h"

namespace korvana::desktop {

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
