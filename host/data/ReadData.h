#pragma once

#include "host/data/DataSet.h"

#include <filesystem>
#include <optional>

namespace korvana {

enum class HeaderLine { Automatic, Yes, No };

/** How to read a file; what is left automatic is found out from the file. */
struct ReadOptions {
    HeaderLine header = HeaderLine::Automatic;
    std::optional<char> separator;   ///< between cells: , ; or tab
    std::optional<char> decimalMark; ///< . or ,
};

/** Reads a data file; the format is chosen from its content and ending. Throws DataError (also when memory
   does not suffice), nothing else. */
DataSet readData(const std::filesystem::path& path, const ReadOptions& options = {});

} // namespace korvana
