#pragma once

#include "host/data/ByteSource.h"
#include "host/data/ColumnKinds.h"
#include "host/data/DelimitedTable.h"
#include "host/data/TextColumns.h"

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace korvana {

/// How a delimited text was understood, in a line.
/// @param first  the first column that is a variable
std::string layoutText(const DelimitedTable& table, std::span<const ColumnTally> tallies,
                       std::span<const ColumnKind> kinds, std::size_t first, unsigned threads);

// Each adds a note where the layout may be another one than that which was found.

/// A first line that was taken for a case, though it may hold the names.
void noteFirstCase(const DelimitedFormat& format, std::vector<std::string>& notes);

/// A first line that was taken for the names, though it may be a case.
void noteHeader(const DelimitedFormat& format, std::span<const TextColumn> texts,
                std::vector<std::string>& notes);

/// A single column of texts is likely a table with another separator.
void noteSingleColumn(const DelimitedTable& table, const ColumnTally& tally, std::vector<std::string>& notes);

/// Texts that are no UTF-8, as those of most files are: reads the file again for the first line of them.
void noteEncoding(const DelimitedTable& table, ByteSource& source, std::vector<std::string>& notes);

} // namespace korvana
