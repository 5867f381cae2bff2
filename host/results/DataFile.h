#pragma once

#include <filesystem>

#include "host/results/ResultsBook.h"

namespace korvana {

/// Results must not take the place of the data that they were made from, whatever the file is called:
/// relative or absolute, behind links. Throws `std::runtime_error` if the target is the data file.
/// @param dataFile  empty: there is none
void refuseDataFile(const std::filesystem::path& target, const std::filesystem::path& dataFile);
/// The same for the data files of a book's outputs.
void refuseDataFile(const std::filesystem::path& target, const ResultsBook& book);

} // namespace korvana
