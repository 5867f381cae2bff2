#pragma once

#include <QString>
#include <cstddef>
#include <string>
#include <vector>

#include "host/results/ResultsBook.h"

namespace korvana::desktop {

/// What an output is called: by its title, or its kind and place where it has none.
[[nodiscard]] QString outputName(const ResultsBook& book, std::size_t place);

/// The settings in which an output differs from those that the same button made in its run; mostly empty.
[[nodiscard]] QString ownSettings(const ResultsBook& book, std::size_t place);

/// The name with the own settings behind it, as the tree shows it.
[[nodiscard]] QString tellingName(const ResultsBook& book, std::size_t place);

/// What an output came from, in one line with the time of day and its own settings, and below it what the
/// analysis remarks about the run; empty where nothing is known.
[[nodiscard]] QString originText(const ResultsBook& book, std::size_t place);
/// The same with all settings, a line each.
[[nodiscard]] QString originDetails(const ResultsBook::Output& output);

/// What a run has to say besides its outputs, as lines of text: analysis, data, how it ended, messages with
/// their number and detail, notes, the outputs by name but for those at the places left out, the protocol of
/// an iterative fit.
[[nodiscard]] std::vector<std::string> runLines(const ResultsBook& book,
                                                const std::vector<std::size_t>& leftOut = {});

/// A table in aligned lines with title, notes and headings; of a long one the first `mostRows`, with a line
/// that says so.
[[nodiscard]] std::vector<std::string> sheetLines(const Spreadsheet& sheet, std::size_t mostRows);

} // namespace korvana::desktop
