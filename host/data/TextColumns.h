#pragma once

#include "host/data/ByteSource.h"
#include "host/data/DataSet.h"
#include "host/data/DelimitedTable.h"

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace korvana {

/// A column to be read as text codes.
struct TextColumn {
    std::size_t column0 = 0;
    double* cells = nullptr;        ///< gets the codes, one per row
    std::vector<ValueLabel> labels; ///< gets the texts of the codes
    bool areTruths = false;         ///< set if these are 0 and 1, see TextCodes
};

/// Reads text columns, and the first column as names of the cases, in a second pass over a table that
/// readChunk has checked. The texts get their codes by TextCodes. The table's chunks must count rows without
/// blank lines. Throws DataError when the rows are not those of the first pass.
/// @param names  gets the names; nullptr: not wanted
/// @return whether some text or name is not UTF-8
bool readTextColumns(const DelimitedTable& table, ByteSource& source, unsigned threads,
                     std::span<TextColumn> columns, CaseNames* names);

} // namespace korvana
