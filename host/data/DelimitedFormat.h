#pragma once

#include "host/data/DelimitedCell.h"
#include "host/data/ReadData.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvana {

/// The layout of a delimited text, as far as its first lines show it.
struct DelimitedFormat {
    Dialect dialect;
    std::vector<std::string> header; ///< the header cells, unquoted; empty without a header line
    std::size_t columns = 0;         ///< cells per row
    std::size_t begin = 0;           ///< offset of the first row of cells
    std::int64_t firstLine = 1;      ///< the line of the first row of cells
    std::string textInFirstRow; ///< a text in a first row that was taken for a case because of a value in it
    std::string valueInFirstRow;
    bool caseNames = false; ///< the first column, whose header cell is empty, names the cases
};

/// Finds the layout from the beginning of a text; nothing when more of it is needed. Throws DataError, naming
/// the file, for options that contradict each other, for texts in UTF-16, with line ends of old Macintosh
/// systems or without any row of cells.
/// @param whole  the text is complete
std::optional<DelimitedFormat> findFormat(std::string_view text, bool whole, const ReadOptions& options,
                                          const std::string& file);

} // namespace korvana
