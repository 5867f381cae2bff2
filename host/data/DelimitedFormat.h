#pragma once

#include "host/data/DelimitedCell.h"
#include "host/data/ReadData.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace korvana {

/** How a delimited text is laid out, as far as its first lines tell. */
struct DelimitedFormat {
    Dialect dialect;
    std::vector<std::string> header; ///< the header cells, unquoted; empty without a header line
    std::size_t columns = 0;         ///< cells per row
    std::size_t begin = 0;           ///< offset of the first row of cells
    std::size_t end = 0;             ///< offset behind the last row, without blank lines at the end
    std::int64_t firstLine = 1;      ///< the line on which the first row of cells stands
    bool caseNames = false;          ///< the first column, whose header cell is empty, names the cases
};

/** Finds the layout. Throws DataError, naming the file, for options that contradict each other, for texts in
   UTF-16, with line ends of old Macintosh systems or without any row of cells. */
DelimitedFormat findFormat(std::string_view text, const ReadOptions& options, const std::string& file);

/** Throws a DataError about the NUL byte at an offset; an offset behind the text means that there is none. */
void refuseNul(std::string_view text, std::size_t offset, const std::string& file);

} // namespace korvana
