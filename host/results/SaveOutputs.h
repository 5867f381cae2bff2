#pragma once

#include <filesystem>
#include <vector>

#include "host/results/WriteBook.h"

namespace korvana {

/// The format that the suffix of a file names, whatever its case. Throws `std::invalid_argument` with the
/// known ones.
[[nodiscard]] OutputFormat formatOfFile(const std::filesystem::path& file);

/// Writes a book into one file, in the format that its suffix names. A file of json, txt, html or xlsx holds
/// everything, in place of what it held. A csv file holds one table, and a picture one chart: the second goes
/// into "NAME-2.csv", and so on. All files appear together once they are whole; they are returned.
///
/// Throws as `writeBook`, and leaves no file where something cannot be written or drawn; `NothingToWrite` if
/// there is no table, or no chart, for the format.
std::vector<std::filesystem::path> saveOutputs(const ResultsBook& book, const std::filesystem::path& file);

} // namespace korvana
