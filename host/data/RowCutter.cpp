#include "host/data/RowCutter.h"

#include "host/data/DataError.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

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

/// A run of whole rows at the beginning of a text.
struct Cut {
    std::size_t bytes = 0; ///< 0: no row ends in the text
    std::int64_t rows = 0;
    std::int64_t lines = 0;
};

/// Scans a text that begins with a row, from one quotation mark to the next.
class Rows {
public:
    Rows(std::string_view text, char separator)
        : begin_(text.data()), end_(begin_ + text.size()), separator_(separator) {
        const char* p = begin_;
        while (p < end_) {
            if (!quoted_ && opensCell(p)) {
                if (*p == '\n') {
                    lastFeed_ = p;
                    ++rows_;
                }
                quoted_ = true;
                p += 2;
                continue;
            }
            const char* const quote = findByte(p, end_, '"');
            if (!quoted_) countRows(p, quote);
            if (quote == end_) break;
            const bool doubled = quoted_ && quote + 1 < end_ && quote[1] == '"';
            quoted_ = quoted_ ? doubled : beginsCell(quote);
            p = quote + (doubled ? 2 : 1);
        }
    }

    /// All rows that end in the text, without trailing blank lines.
    Cut whole() const {
        if (lastFeed_ == nullptr) return {};
        const char* const text = endOfText(lastFeed_);
        if (text == begin_) return {};
        // Between the last row with text and the last line feed there are only blanks, so no quotes.
        const char* const cut = findByte(text, lastFeed_, '\n') + 1;
        const std::int64_t blank = countBetween(cut, lastFeed_ + 1);
        return {static_cast<std::size_t>(cut - begin_), rows_ - blank, countBetween(begin_, cut)};
    }

    /// All of the text, without trailing blank lines; the last row needs no line feed.
    Cut untilEnd() const {
        const char* const cut = endOfText(end_);
        if (cut == begin_) return {};
        const std::int64_t blank = lastFeed_ != nullptr && cut <= lastFeed_ ? countBetween(cut, end_) : 0;
        return {static_cast<std::size_t>(cut - begin_), rows_ - blank + 1, countBetween(begin_, cut)};
    }

private:
    /// Whether nothing else comes between two cells in quotation marks, the most frequent case.
    bool opensCell(const char* p) const {
        return end_ - p >= 2 && p[1] == '"' && (*p == separator_ || *p == '\n');
    }

    void countRows(const char* p, const char* end) {
        const void* const feed = end > p ? memrchr(p, '\n', static_cast<std::size_t>(end - p)) : nullptr;
        if (feed == nullptr) return;
        lastFeed_ = static_cast<const char*>(feed);
        rows_ += countBetween(p, lastFeed_ + 1);
    }

    bool beginsCell(const char* quote) const {
        const char* p = quote;
        while (p > begin_ && (p[-1] == ' ' || p[-1] == '\t') && p[-1] != separator_)
            --p;
        return p == begin_ || p[-1] == separator_ || p[-1] == '\n';
    }

    const char* endOfText(const char* p) const {
        while (p > begin_ && isBlankCharacter(p[-1], separator_))
            --p;
        return p;
    }

    const char* begin_;
    const char* end_;
    char separator_;
    bool quoted_ = false;
    const char* lastFeed_ = nullptr; ///< that ends a row
    std::int64_t rows_ = 0;
};

} // namespace

RowCutter::RowCutter(ByteSource& source, std::string head, std::size_t begin, std::int64_t firstLine,
                     char separator, std::size_t chunkBytes)
    : source_(source), rest_(std::move(head)), restAt_(begin), separator_(separator),
      chunkBytes_(std::max<std::size_t>(chunkBytes, 1)), line_(firstLine) {}

std::size_t RowCutter::fetch(char* to, std::size_t most) {
    if (restAt_ == rest_.size()) {
        const std::size_t count = ended_ ? 0 : source_.read({to, most});
        ended_ = count == 0;
        return count;
    }
    const std::size_t count = std::min(most, rest_.size() - restAt_);
    std::memcpy(to, rest_.data() + restAt_, count);
    restAt_ += count;
    return count;
}

void RowCutter::giveBack(std::string_view text) {
    if (restAt_ < rest_.size()) { // everything came from there
        restAt_ -= text.size();
    } else {
        rest_.assign(text);
        restAt_ = 0;
    }
}

bool RowCutter::next(ChunkText& chunk) {
    std::size_t filled = 0;
    Cut cut;
    for (std::size_t wanted = chunkBytes_; cut.bytes == 0; wanted *= 2) {
        if (wanted > chunkBytes_ && wanted > mostRowBytes) {
            throw DataError(source_.name(), line_, 0,
                            "no row ends within 256 MB from here; check whether a quotation mark is never "
                            "closed, and the line ends");
        }
        if (chunk.room.size() < wanted + chunkMargin) chunk.room.resize(wanted + chunkMargin);
        while (filled < wanted) {
            const std::size_t count = fetch(chunk.room.data() + filled, wanted - filled);
            if (count == 0) break;
            filled += count;
        }
        const Rows rows({chunk.room.data(), filled}, separator_);
        cut = filled < wanted ? rows.untilEnd() : rows.whole();
        if (filled < wanted && cut.bytes == 0) return false;
        if (filled < wanted) filled = cut.bytes;
    }
    chunk.text = {chunk.room.data(), cut.bytes};
    giveBack({chunk.room.data() + cut.bytes, filled - cut.bytes});
    chunk.room[cut.bytes] = '\n';
    refuseNul(chunk.text, line_, source_.name());
    chunk.rows = {cut.bytes, row_, cut.rows, line_};
    row_ += cut.rows;
    line_ += cut.lines;
    return true;
}

std::int64_t countLineFeeds(std::string_view text) {
    return countBetween(text.data(), text.data() + text.size());
}

void refuseNul(std::string_view text, std::int64_t firstLine, const std::string& file) {
    const std::size_t nul = text.find('\0');
    if (nul == std::string_view::npos) return;
    throw DataError(
        file, firstLine + countLineFeeds(text.substr(0, nul)), 0,
        "the file contains NUL bytes, so it is not text (or not UTF-8); save the data as text with "
        "commas, semicolons or tabs (.csv) in UTF-8");
}

} // namespace korvana
