#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace korvana {

class FileBytes;

/** A run of whole rows. */
struct RowChunk {
    std::size_t begin = 0; ///< offsets in the text
    std::size_t end = 0;
    std::int64_t firstRow = 0; ///< 0-based
    std::int64_t rowCount = 0;
    std::int64_t firstLine = 0; ///< 1-based line of the file (quoted cells may span lines)
};

/** Where the rows of a delimited text begin, in chunks of about equal size; what is inside quotes ends no
 * row. */
struct RowIndex {
    std::vector<RowChunk> chunks;
    std::int64_t rowCount = 0;
    std::size_t nul = static_cast<std::size_t>(-1); ///< offset of the first NUL byte, if there is one

    std::int64_t lineOf(std::string_view text, std::size_t offset) const;
};

std::int64_t countLineFeeds(std::string_view text);

/** Indexes the rows of a text from an offset on. The text has no line feed at its end. Stops at a NUL byte.
    @param firstLine   the line on which it begins
    @param chunkBytes  the size that a chunk should have, at least 1
    @param file        its pages are released while the index advances */
RowIndex indexRows(std::string_view text, std::size_t begin, std::int64_t firstLine, char separator,
                   std::size_t chunkBytes, const FileBytes& file);

} // namespace korvana
