#include "host/data/TextColumns.h"

#include "host/data/DistinctTexts.h"
#include "host/data/TextCodes.h"
#include "host/data/TextEncoding.h"
#include "host/data/Workers.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <deque>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace korvana {
namespace {

/// Calls take(column, text, begin of the cell) for the first cells of every row of a chunk, up to a column.
template <typename Take, typename RowEnd>
void walkCells(const DelimitedTable& table, std::string_view text, std::size_t lastColumn, const Take& take,
               const RowEnd& rowEnd) {
    const char separator = table.format.dialect.separator;
    const char* p = text.data();
    const char* const end = p + text.size();
    std::string scratch;
    while (p < end) {
        bool blankLine = false;
        for (std::size_t column = 0;; ++column, ++p) {
            const char* const begin = p;
            const RawCell cell = readCell(p, end, separator, scratch);
            p = cell.next;
            const bool lineEnds = p == end || *p == '\n';
            blankLine = lineEnds && column == 0 && table.format.columns > 1;
            if (!blankLine && column <= lastColumn) take(column, cell.text, begin);
            if (lineEnds) break;
        }
        if (!blankLine) rowEnd();
        if (p < end) ++p;
    }
}

/// The texts of one column that one thread has seen.
class LocalTexts {
public:
    /// @param check  is called with each new text and returns whether it is UTF-8
    template <typename Check>
    std::size_t codeOf(std::string_view text, std::size_t row, const Check& check) {
        const std::size_t code = texts.numberOf(text);
        if (code == rows.size()) {
            foreign = !check(text) || foreign;
            rows.push_back(static_cast<std::int64_t>(row));
        }
        return code;
    }

    DistinctTexts texts;
    std::vector<std::int64_t> rows; ///< the first one of each: a thread takes its chunks in their order
    bool foreign = false;           ///< some are not UTF-8
};

/// What the threads that read the texts share.
struct TextPass {
    const DelimitedTable& table;
    ByteSource& source;
    std::span<TextColumn> columns;
    std::vector<TextColumn*> wanted; ///< by the number of the column
    std::size_t lastColumn = 0;
    std::vector<CaseNames> names;     ///< by chunk; empty when they are not wanted
    std::vector<std::size_t> readers; ///< by chunk: the number of the thread
    std::size_t next = 0;
};

class TextWorker final : public Worker {
public:
    TextWorker(TextPass& pass, std::size_t number)
        : texts(pass.columns.size()), pass_(pass), number_(number) {}

    bool take() override {
        pass_.table.checkStop();
        if (pass_.next == pass_.table.chunks.size()) return false;
        chunk_ = pass_.next++;
        text_.resize(pass_.table.chunks[chunk_].bytes);
        if (pass_.source.readFully(text_) < text_.size()) pass_.source.refuseChanged();
        pass_.readers[chunk_] = number_;
        return true;
    }

    void work() override {
        const RowChunk& chunk = pass_.table.chunks[chunk_];
        auto row = static_cast<std::size_t>(chunk.firstRow);
        const auto rowsEnd = static_cast<std::size_t>(chunk.firstRow + chunk.rowCount);
        CaseNames names;
        walkCells(
            pass_.table, {text_.data(), text_.size()}, pass_.lastColumn,
            [&](std::size_t column, std::string_view text, const char* begin) {
                const auto check = [&](std::string_view of) { return checkCoding(of, column, begin); };
                if (row == rowsEnd) pass_.source.refuseChanged();
                if (column == 0 && !pass_.names.empty()) {
                    foreignName = !check(text) || foreignName;
                    names.text += toUtf8(text);
                    names.ends.push_back(names.text.size());
                }
                TextColumn* const target = pass_.wanted[column];
                if (target == nullptr) return;
                const auto place = static_cast<std::size_t>(target - pass_.columns.data());
                target->cells[row] = isMissingText(text)
                                         ? std::numeric_limits<double>::quiet_NaN()
                                         : static_cast<double>(texts[place].codeOf(text, row, check));
            },
            [&] { ++row; });
        if (row != rowsEnd) pass_.source.refuseChanged();
        if (!pass_.names.empty()) pass_.names[chunk_] = std::move(names);
    }

    std::vector<LocalTexts> texts; ///< by text column
    bool foreignName = false;      ///< some case name is not UTF-8

private:
    /// Whether a text is UTF-8. Throws for one that is not Windows-1252 either, which could not be told from
    /// others.
    bool checkCoding(std::string_view text, std::size_t column, const char* begin) const {
        if (isUtf8(text)) return true;
        if (const auto byte = byteOfNoCharacter(text)) {
            const auto before = static_cast<std::size_t>(begin - text_.data());
            throw pass_.table.cellError(pass_.table.chunks[chunk_].firstLine +
                                            countLineFeeds({text_.data(), before}),
                                        column, "'" + brief(text) + "' " + noCharacter(*byte));
        }
        return false;
    }

    TextPass& pass_;
    std::size_t number_;
    std::size_t chunk_ = 0;
    std::vector<char> text_;
};

/// Appends the texts that one thread has seen to those of the others.
/// @param decoded  keeps those that are not UTF-8 in the file
void append(const LocalTexts& part, std::vector<SeenText>& seen, std::deque<std::string>& decoded) {
    for (std::size_t i = 0; i < part.texts.size(); ++i) {
        std::string_view text = part.texts[i];
        if (part.foreign && !isUtf8(text)) text = decoded.emplace_back(fromWindows1252(text));
        seen.push_back({text, part.rows[i]});
    }
}

void skip(ByteSource& source, std::size_t bytes) {
    std::array<char, 4096> room; // NOLINT: filled by reading
    while (bytes > 0) {
        const std::size_t count = source.readFully({room.data(), std::min(bytes, room.size())});
        if (count == 0) source.refuseChanged();
        bytes -= count;
    }
}

CaseNames joined(std::vector<CaseNames> parts) {
    CaseNames all;
    for (CaseNames& part : parts) {
        const std::uint64_t begin = all.text.size();
        all.text += part.text;
        for (const std::uint64_t end : part.ends)
            all.ends.push_back(begin + end);
        part = {};
    }
    return all;
}

} // namespace

bool readTextColumns(const DelimitedTable& table, ByteSource& source, unsigned threads,
                     std::span<TextColumn> columns, CaseNames* names) {
    if (columns.empty() && names == nullptr) return false;
    const std::size_t chunks = table.chunks.size();
    TextPass pass{table, source, columns, {}, 0, {}, std::vector<std::size_t>(chunks), 0};
    pass.wanted.resize(table.format.columns);
    for (TextColumn& column : columns) {
        pass.wanted[column.column0] = &column;
        pass.lastColumn = std::max(pass.lastColumn, column.column0);
    }
    if (names != nullptr) pass.names.resize(chunks);
    source.rewind();
    skip(source, table.format.begin);

    std::vector<std::unique_ptr<Worker>> workers;
    std::vector<TextWorker*> readers;
    for (unsigned i = 0; i < threads; ++i) {
        auto worker = std::make_unique<TextWorker>(pass, i);
        readers.push_back(worker.get());
        workers.push_back(std::move(worker));
    }
    runWorkers(workers);

    for (std::size_t place = 0; place < columns.size(); ++place) {
        std::deque<std::string> decoded;
        std::vector<SeenText> seen;
        std::vector<std::size_t> begins; // of the texts of each reader
        for (const TextWorker* reader : readers) {
            begins.push_back(seen.size());
            append(reader->texts[place], seen, decoded);
        }
        TextCodes all = codesOf(seen, threads);
        columns[place].labels = std::move(all.labels);
        columns[place].areTruths = all.areTruths;
        forEachInOrder(chunks, threads, [&](std::size_t i) {
            const RowChunk& chunk = table.chunks[i];
            const double* const own = all.codes.data() + begins[pass.readers[i]];
            double* const cells = columns[place].cells + chunk.firstRow;
            for (std::int64_t row = 0; row < chunk.rowCount; ++row)
                if (cells[row] >= 0) cells[row] = own[static_cast<std::size_t>(cells[row])];
        });
    }
    if (names != nullptr) *names = joined(std::move(pass.names));
    return std::any_of(readers.begin(), readers.end(), [](const TextWorker* reader) {
        return reader->foreignName || std::any_of(reader->texts.begin(), reader->texts.end(),
                                                  [](const LocalTexts& texts) { return texts.foreign; });
    });
}

} // namespace korvana
