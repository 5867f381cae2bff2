#include "host/data/RowIndex.h"

#include "host/data/FileBytes.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace korvana {
namespace {

const char* findByte(const char* p, const char* end, char byte) {
    const void* found = p < end ? std::memchr(p, byte, static_cast<std::size_t>(end - p)) : nullptr;
    return found != nullptr ? static_cast<const char*>(found) : end;
}

std::int64_t countBetween(const char* p, const char* end) {
    // Sums in lanes of one byte, emptied before they can overflow: the compiler turns this into vector code.
    constexpr std::ptrdiff_t lanes = 64;
    std::int64_t count = 0;
    while (end - p >= lanes) {
        std::array<unsigned char, lanes> sums{};
        const std::ptrdiff_t rounds = std::min<std::ptrdiff_t>((end - p) / lanes, 255);
        for (std::ptrdiff_t round = 0; round < rounds; ++round, p += lanes) {
            for (std::size_t lane = 0; lane < sums.size(); ++lane)
                sums[lane] = static_cast<unsigned char>(sums[lane] + (p[lane] == '\n' ? 1 : 0));
        }
        for (const unsigned char sum : sums)
            count += sum;
    }
    for (; p < end; ++p)
        count += *p == '\n' ? 1 : 0;
    return count;
}

/** Walks through the text once, from one quotation mark to the next, and cuts chunks at row ends. */
class Indexer {
public:
    Indexer(std::string_view text, std::size_t begin, std::int64_t firstLine, char separator,
            std::size_t chunkBytes)
        : base_(text.data()), start_(base_ + begin), end_(base_ + text.size()), separator_(separator),
          chunkBytes_(static_cast<std::ptrdiff_t>(chunkBytes)), chunkBegin_(start_), line_(firstLine) {
        chunk_.firstLine = firstLine;
    }

    RowIndex run(const FileBytes& file) {
        // Blocks that stay in the processor's cache while they are looked through several times.
        constexpr std::ptrdiff_t blockBytes = std::ptrdiff_t{256} << 10;
        constexpr std::ptrdiff_t releaseBytes = std::ptrdiff_t{8} << 20;
        const char* p = start_;
        const char* released = start_;
        while (p < end_) {
            const char* const blockEnd = p + std::min(blockBytes, end_ - p);
            const char* const nul = findByte(p, blockEnd, '\0');
            if (nul != blockEnd) {
                index_.nul = offset(nul);
                return std::move(index_);
            }
            p = walk(p, blockEnd);
            if (p - released >= releaseBytes) {
                file.release(offset(released), offset(p));
                released = p;
            }
        }
        ++row_; // the last row has no line feed
        cut(end_);
        index_.rowCount = row_;
        return std::move(index_);
    }

private:
    std::size_t offset(const char* p) const { return static_cast<std::size_t>(p - base_); }

    const char* walk(const char* p, const char* blockEnd) {
        while (p < blockEnd) {
            const char* const quote = findByte(p, blockEnd, '"');
            if (!quoted_) {
                countRows(p, quote);
                if (quote == blockEnd) return quote;
                quoted_ = beginsCell(quote);
                p = quote + 1;
            } else {
                line_ += countBetween(p, quote);
                if (quote == blockEnd) return quote;
                const bool doubled = quote + 1 < end_ && quote[1] == '"';
                quoted_ = doubled;
                p = quote + (doubled ? 2 : 1);
            }
        }
        return p;
    }

    bool beginsCell(const char* quote) const {
        const char* p = quote;
        while (p > start_ && (p[-1] == ' ' || p[-1] == '\t') && p[-1] != separator_)
            --p;
        return p == start_ || p[-1] == separator_ || p[-1] == '\n';
    }

    /** Counts the rows that end in a piece of text outside quotes. */
    void countRows(const char* p, const char* end) {
        while (p < end) {
            const char* const target = chunkBegin_ + std::min(chunkBytes_, end_ - chunkBegin_);
            const char* const counted = std::clamp(target, p, end);
            const std::int64_t feeds = countBetween(p, counted);
            row_ += feeds;
            line_ += feeds;
            const char* const feed = findByte(counted, end, '\n');
            if (feed == end) return;
            ++row_;
            ++line_;
            p = feed + 1;
            cut(p);
        }
    }

    void cut(const char* end) {
        chunk_.begin = offset(chunkBegin_);
        chunk_.end = offset(end);
        chunk_.rowCount = row_ - chunk_.firstRow;
        index_.chunks.push_back(chunk_);
        chunkBegin_ = end;
        chunk_.firstRow = row_;
        chunk_.firstLine = line_;
    }

    const char* base_;
    const char* start_;
    const char* end_;
    char separator_;
    std::ptrdiff_t chunkBytes_;
    const char* chunkBegin_;
    RowChunk chunk_;
    std::int64_t row_ = 0;
    std::int64_t line_;
    bool quoted_ = false;
    RowIndex index_;
};

} // namespace

std::int64_t countLineFeeds(std::string_view text) {
    return countBetween(text.data(), text.data() + text.size());
}

std::int64_t RowIndex::lineOf(std::string_view text, std::size_t offset) const {
    const auto after =
        std::upper_bound(chunks.begin(), chunks.end(), offset,
                         [](std::size_t at, const RowChunk& chunk) { return at < chunk.begin; });
    if (after == chunks.begin()) return 0;
    const RowChunk& chunk = *(after - 1);
    return chunk.firstLine + countLineFeeds(text.substr(chunk.begin, offset - chunk.begin));
}

RowIndex indexRows(std::string_view text, std::size_t begin, std::int64_t firstLine, char separator,
                   std::size_t chunkBytes, const FileBytes& file) {
    return Indexer(text, begin, firstLine, separator, chunkBytes).run(file);
}

} // namespace korvana
