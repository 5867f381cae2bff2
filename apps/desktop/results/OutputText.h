#pragma once

#include <QString>
#include <cstddef>
#include <string>
#include <vector>

#include "host/results/ResultsBook.h"

namespace korvana::desktop {

/// The name of an output: its title, or its kind and place where it has none.
[[nodiscard]] QString outputName(const ResultsBook& book, std::size_t place);

/// The settings in which an output differs from others that the same button made in its run; mostly empty.
[[nodiscard]] QString ownSettings(const ResultsBook& book, std::size_t place);

/// The name followed by these settings, as the tree shows it.
[[nodiscard]] QString tellingName(const ResultsBook& book, std::size_t place);

/// How an output was made: one line with the time of day and its own settings, and below it the remarks of
/// the analysis about the run; empty where nothing is known.
[[nodiscard]] QString originText(const ResultsBook& book, std::size_t place);
/// The same with all settings, one per line.
[[nodiscard]] QString originDetails(const ResultsBook::Output& output);

/// A run without the contents of its outputs, as lines of text: analysis, data, how it ended, messages with
/// their number and detail, notes, the names of the outputs (except those to be left out), the log of an
/// iterative fit.
[[nodiscard]] std::vector<std::string> runLines(const ResultsBook& book,
                                                const std::vector<std::size_t>& leftOut = {});

/// A table in aligned lines with title, notes and headings; of a long one the first `mostRows` rows, with a
/// line that says so.
[[nodiscard]] std::vector<std::string> sheetLines(const Spreadsheet& sheet, std::size_t mostRows);

} // namespace korvana::desktop
