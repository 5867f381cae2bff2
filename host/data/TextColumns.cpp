#include "host/data/TextColumns.h"

#include "host/data/NumberText.h"
#include "host/data/TextCodes.h"
#include "host/data/TextEncoding.h"
#include "host/data/Workers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
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

/// The texts of one column that one thread has seen, numbered by first appearance.
class LocalTexts {
public:
    /// @param check  is called with each new text and returns whether it is UTF-8
    template <typename Check>
    std::size_t codeOf(std::string_view text, std::size_t row, const Check& check) {
        if (!texts.empty() && text == texts[last_]) return last_;
        auto known = codes_.find(text);
        if (known == codes_.end()) {
            foreign = !check(text) || foreign;
            known = codes_.emplace(text, texts.size()).first;
            texts.push_back(known->first);
            rows.push_back(static_cast<std::int64_t>(row));
        }
        return last_ = known->second;
    }

    std::vector<std::string_view> texts;
    std::vector<std::int64_t> rows; ///< the first one of each: a thread takes its chunks in their order
    bool foreign = false;           ///< some are not UTF-8

private:
    struct Hash : std::hash<std::string_view> {
        using is_transparent = void;
    };
    std::unordered_map<std::string, std::size_t, Hash, std::equal_to<>> codes_;
    std::size_t last_ = 0;
};

TextCodes codesOf(const std::vector<const LocalTexts*>& parts) {
    std::vector<SeenText> seen;
    for (const LocalTexts* part : parts)
        for (std::size_t i = 0; i < part->texts.size(); ++i)
            seen.push_back({toUtf8(part->texts[i]), part->rows[i]});
    return TextCodes(std::move(seen));
}

/// The final codes of the texts of one thread.
std::vector<double> codesOf(const LocalTexts& part, const TextCodes& codes) {
    std::vector<double> final;
    final.reserve(part.texts.size());
    for (const std::string_view text : part.texts) {
        const double code = codes.of(text);
        final.push_back(std::isnan(code) ? codes.of(toUtf8(text)) : code);
    }
    return final;
}

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
        std::vector<const LocalTexts*> texts;
        for (const TextWorker* reader : readers)
            texts.push_back(&reader->texts[place]);
        const TextCodes all = codesOf(texts);
        columns[place].labels = all.labels();
        columns[place].areTruths = all.areTruths();
        std::vector<std::vector<double>> codes;
        for (const LocalTexts* each : texts)
            codes.push_back(codesOf(*each, all));
        forEachInOrder(chunks, threads, [&](std::size_t i) {
            const RowChunk& chunk = table.chunks[i];
            const std::vector<double>& own = codes[pass.readers[i]];
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
