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
    std::vector<ValueLabel> labels; ///< gets the texts of the codes 1..k
};

/// Reads text columns, and the first column as names of the cases, in a second pass over a table that
/// readChunk has checked. The texts are numbered in order: numbers by value, then texts by their UTF-8 bytes,
/// so that the codes do not depend on the order of the rows. The table's chunks must count rows without blank
/// lines. Throws DataError when the rows are not those of the first pass.
/// @param names  gets the names; nullptr: not wanted
/// @return whether some text or name is not UTF-8
bool readTextColumns(const DelimitedTable& table, ByteSource& source, unsigned threads,
                     std::span<TextColumn> columns, CaseNames* names);

/// The labels 1..k of the texts of a column, which may repeat, in that order.
std::vector<ValueLabel> labelsOf(std::vector<std::string> texts);

} // namespace korvana
