#pragma once

#include "host/data/DataSet.h"
#include "host/data/DelimitedTable.h"
#include "host/data/FileBytes.h"

#include <cstddef>
#include <span>
#include <vector>

namespace korvana {

/** A column to be read as text codes. */
struct TextColumn {
    std::size_t column0 = 0;
    double* cells = nullptr;        ///< gets the codes, one per row
    std::vector<ValueLabel> labels; ///< gets the texts of the codes 1..k
};

/** Reads text columns in a second pass over a table that readChunk has found sound. The texts are numbered in
   order: numbers by value, then texts by their UTF-8 bytes, so that the codes do not depend on the order of
   the rows. The index's chunks must count rows without blank lines. */
void readTextColumns(const DelimitedTable& table, const FileBytes& file, unsigned threads,
                     std::span<TextColumn> columns);

/** Reads the first column as names of the cases. */
CaseNames readCaseNames(const DelimitedTable& table, const FileBytes& file, unsigned threads);

} // namespace korvana
