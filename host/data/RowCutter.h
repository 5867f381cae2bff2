#pragma once

#include "host/data/ByteSource.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace korvana {

/// A run of whole rows; the next one begins where it ends.
struct RowChunk {
    std::size_t bytes = 0;
    std::int64_t firstRow = 0; ///< 0-based
    std::int64_t rowCount = 0;
    std::int64_t firstLine = 0; ///< 1-based line of the file (quoted cells may span lines)
};

/// What follows the text of a chunk, so that a search need not look for its end.
inline constexpr std::size_t chunkMargin = 8;

/// A chunk with its text. The memory is reused for the next one.
struct ChunkText {
    RowChunk rows;
    std::string_view text; ///< points into `room`, where a line feed and chunkMargin - 1 more bytes follow it
    std::vector<char> room;
};

/// The longest row allowed: an unclosed quotation mark becomes an error before memory is full.
inline constexpr std::size_t mostRowBytes = std::size_t{256} << 20;

/// Cuts a text into chunks at the ends of rows while it is read; a line break inside quotes does not end a
/// row. Blank lines at the end of the text belong to no chunk.
class RowCutter {
public:
    /// @param head       the text that has been read already
    /// @param begin      where in it the first row begins
    /// @param firstLine  the line on which it begins
    /// @param chunkBytes the size that a chunk should have, at least 1
    RowCutter(ByteSource& source, std::string head, std::size_t begin, std::int64_t firstLine, char separator,
              std::size_t chunkBytes);

    /// The next chunk; false at the end. Throws DataError for NUL bytes and rows that are too long, and
    /// whatever the source throws.
    bool next(ChunkText& chunk);

private:
    std::size_t fetch(char* to, std::size_t most);
    void giveBack(std::string_view text);

    ByteSource& source_;
    std::string rest_; ///< read, but not yet in a chunk
    std::size_t restAt_;
    bool ended_ = false;
    char separator_;
    std::size_t chunkBytes_;
    std::int64_t row_ = 0;
    std::int64_t line_;
};

std::int64_t countLineFeeds(std::string_view text);

/// Whether a character is a blank: a line of nothing else is skipped.
inline bool isBlankCharacter(char c, char separator) {
    return c == ' ' || c == '\r' || c == '\n' || (c == '\t' && separator != '\t');
}

/// Throws a DataError when the text has a NUL byte.
/// @param firstLine  the line on which the text begins
void refuseNul(std::string_view text, std::int64_t firstLine, const std::string& file);

} // namespace korvana
