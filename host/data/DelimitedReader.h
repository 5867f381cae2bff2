#pragma once

#include "host/data/ByteSource.h"
#include "host/data/DataSet.h"
#include "host/data/ReadData.h"

#include <cstddef>
#include <cstdint>
#include <limits>

namespace korvana {

/// How the work is divided; it does not affect the result.
struct ReaderTuning {
    unsigned threads = 0;             ///< 0 = as many as useful
    std::size_t chunkBytes = 1 << 20; ///< at least 1
    std::int64_t maxCases = std::numeric_limits<std::int32_t>::max();
};

/// Reads a text of separated cells from the source's first byte on: once, and a second time when it has
/// columns of texts. A file that changes meanwhile is refused. Throws DataError, ReadingStopped;
/// std::bad_alloc when memory does not suffice.
DataSet readDelimited(ByteSource& source, const ReadOptions& options = {}, const ReaderTuning& tuning = {});

} // namespace korvana
