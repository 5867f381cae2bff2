#pragma once

#include "host/data/ColumnTally.h"
#include "host/data/DataError.h"
#include "host/data/DelimitedFormat.h"
#include "host/data/RowCutter.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

namespace korvana {

/// What is known about a delimited text while it is read.
struct DelimitedTable {
    std::string file; ///< as the user named it
    DelimitedFormat format;
    std::vector<std::string> names; ///< one per column
    std::deque<RowChunk> chunks;    ///< in order, without gaps; chunks do not move
    std::stop_token stop;

    std::int64_t rowCount() const {
        return chunks.empty() ? 0 : chunks.back().firstRow + chunks.back().rowCount;
    }

    /// Throws ReadingStopped when asked to stop; called once per chunk.
    void checkStop() const {
        if (stop.stop_requested()) throw ReadingStopped();
    }

    /// An error about a cell, or about a row's line and one of its columns.
    DataError cellError(std::int64_t line, std::size_t column0, const std::string& what) const;
};

/// Reads the cells of a chunk as numbers (dates as day numbers, or packed when their order is not known) into
/// the columns, from the chunk's first row on; other cells and missing ones become NaN. Blank lines are
/// skipped, unless the table has only one column: there they are missing cells. Throws DataError for rows
/// with another number of cells and for faulty quotes.
/// @param tallies  one per column, get the chunk's cells; they are kept when its chunks are read in order
/// @return the number of rows without blank lines, at most as many as the chunk counts
std::int64_t readChunk(const DelimitedTable& table, const ChunkText& chunk, std::span<double* const> columns,
                       std::span<ColumnTally> tallies);

} // namespace korvana
