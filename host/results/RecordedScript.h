#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/results/ResultsBook.h"

namespace korvana {

/// Every recorded script begins with this.
inline constexpr std::string_view scriptMark = "# Recorded by Korvana Survival";

/// A Python script that makes the results of a book again: opens the data as they were read, defines, selects
/// and weights as the run did, sets its dialogs to what they were, answers their questions, and performs the
/// actions that made the outputs, each with its settings. A data file is named by its absolute path, so that
/// the script runs from any folder; data that cannot be opened again (standard input, a table in memory) are
/// a place to fill in, and until then the script ends with a message.
///
/// What a person tried on the way to the results is not in it: settings changed again, runs that were
/// refused, outputs that failed.
/// @param without  places of outputs that are not wanted, ascending
/// @param run      that of a book without outputs; nullptr: unknown
[[nodiscard]] std::string recordedScript(const ResultsBook& book,
                                         const std::vector<std::size_t>& without = {},
                                         const std::shared_ptr<const RunOrigin>& run = nullptr);

/// A script replaces a recorded one or an empty file, and nothing else.
/// @param file      need not be there, but its folder
/// @param dataFile  if known, for the message
/// @throws std::runtime_error saying why the file cannot be the script
void checkScriptFile(const std::filesystem::path& file, const std::filesystem::path& dataFile);

} // namespace korvana
