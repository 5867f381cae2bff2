#pragma once

#include "host/data/ColumnTally.h"
#include "host/data/DataError.h"
#include "host/data/DelimitedFormat.h"
#include "host/data/RowIndex.h"
#include "host/data/Variable.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace korvana {

/** A delimited text with what is known about it while it is read. */
struct DelimitedTable {
    std::string file; ///< as the user named it
    std::string_view text;
    DelimitedFormat format;
    RowIndex index;
    std::vector<std::string> names; ///< one per column
    std::stop_token stop;

    /** Throws ReadingStopped when the reader is to give up; asked once per chunk. */
    void checkStop() const {
        if (stop.stop_requested()) throw ReadingStopped();
    }

    /** An error about the cell that begins at an offset. */
    DataError cellError(std::size_t offset, std::size_t column0, const std::string& what) const;

    std::string_view cellAt(std::size_t offset, std::string& scratch) const;
};

/** What one chunk held. */
struct ChunkCells {
    std::int64_t rows = 0; ///< without blank lines
    std::vector<ColumnTally> tallies;
};

/** Reads the cells of a chunk as numbers (dates as day numbers) into the columns, from the chunk's first row
   on; other cells and missing ones become NaN. Blank lines are skipped, unless the table has only one column:
   there they are missing cells. Throws DataError for rows with another number of cells and for faulty quotes.
 */
ChunkCells readChunk(const DelimitedTable& table, const RowChunk& chunk, std::span<double* const> columns);

/** What a column is, from the counts of its cells. Throws DataError for a column of numbers with an infinite
   one, of dates with an impossible one, or of numbers that mix decimal commas and points. */
VariableKind decideKind(const DelimitedTable& table, std::size_t column0, const ColumnTally& tally);

} // namespace korvana
