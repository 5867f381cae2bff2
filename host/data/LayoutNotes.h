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

/// How a delimited text was understood, in one line.
/// @param first  the first column that is a variable
std::string layoutText(const DelimitedTable& table, std::span<const ColumnTally> tallies,
                       std::span<const ColumnKind> kinds, std::size_t first, unsigned threads);

// Each adds a note where the layout may differ from the one found.

/// A first line that was taken for a case, though it may hold the names.
void noteFirstCase(const DelimitedFormat& format, std::vector<std::string>& notes);

/// A first line that was taken for the names, though it may be a case.
void noteHeader(const DelimitedFormat& format, std::span<const TextColumn> texts,
                std::vector<std::string>& notes);

/// A single column of texts is likely a table with another separator.
void noteSingleColumn(const DelimitedTable& table, const ColumnTally& tally, std::vector<std::string>& notes);

/// Texts that are not UTF-8: reads the file again to find their first line.
void noteEncoding(const DelimitedTable& table, ByteSource& source, std::vector<std::string>& notes);

} // namespace korvana
