#include "host/data/TextColumns.h"

#include "host/data/NumberText.h"
#include "host/data/TextEncoding.h"
#include "host/data/Workers.h"

#include <algorithm>
#include <deque>
#include <limits>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace korvana {
namespace {

/** Calls take(column, text, text may vanish) for the first cells of every row of a chunk, up to a column. */
template <typename Take, typename RowEnd>
void walkCells(const DelimitedTable& table, const RowChunk& chunk, std::size_t lastColumn, const Take& take,
               const RowEnd& rowEnd) {
    const char separator = table.format.dialect.separator;
    const char* p = table.text.data() + chunk.begin;
    const char* const end = table.text.data() + chunk.end;
    std::string scratch;
    while (p < end) {
        bool blankLine = false;
        for (std::size_t column = 0;; ++column, ++p) {
            const RawCell cell = readCell(p, end, separator, scratch);
            p = cell.next;
            const bool lineEnds = p == end || *p == '\n';
            blankLine = lineEnds && column == 0 && table.format.columns > 1;
            if (!blankLine && column <= lastColumn)
                take(column, cell.text, cell.text.data() == scratch.data());
            if (lineEnds) break;
        }
        if (!blankLine) rowEnd();
        if (p < end) ++p;
    }
}

/** The texts of one column in one chunk, numbered by first appearance. */
class LocalTexts {
public:
    std::size_t codeOf(std::string_view text, bool vanishes) {
        if (!texts.empty() && text == texts[last_]) return last_;
        const auto known = codes_.find(text);
        if (known != codes_.end()) return last_ = known->second;
        if (vanishes) text = kept_.emplace_back(text);
        last_ = texts.size();
        codes_.emplace(text, last_);
        texts.push_back(text);
        return last_;
    }

    std::vector<std::string_view> texts;

    void forgetCodes() { codes_ = {}; }

private:
    std::unordered_map<std::string_view, std::size_t> codes_;
    std::deque<std::string> kept_;
    std::size_t last_ = 0;
};

bool before(const std::string& a, const std::string& b) {
    const NumberText x = readNumber(a);
    const NumberText y = readNumber(b);
    const bool xIsNumber = x.form == NumberForm::Finite;
    const bool yIsNumber = y.form == NumberForm::Finite;
    if (xIsNumber != yIsNumber) return xIsNumber;
    if (xIsNumber && x.value != y.value) return x.value < y.value;
    return a < b;
}

/** Numbers the texts of all chunks and gives, per chunk, the final code of each local one. */
std::vector<std::vector<double>> mergeTexts(const std::vector<LocalTexts*>& chunks,
                                            std::vector<ValueLabel>& labels) {
    std::vector<std::string> all;
    {
        std::unordered_map<std::string_view, bool> seen;
        for (const LocalTexts* chunk : chunks) {
            for (const std::string_view text : chunk->texts)
                if (seen.emplace(text, true).second) all.push_back(toUtf8(text));
        }
    }
    std::sort(all.begin(), all.end(), before);
    all.erase(std::unique(all.begin(), all.end()), all.end());
    labels.clear();
    labels.reserve(all.size());
    std::unordered_map<std::string_view, double> codes;
    for (std::string& text : all)
        labels.push_back({static_cast<double>(labels.size() + 1), std::move(text)});
    for (const ValueLabel& label : labels)
        codes.emplace(label.text, label.value);
    std::vector<std::vector<double>> final(chunks.size());
    for (std::size_t i = 0; i < chunks.size(); ++i) {
        final[i].reserve(chunks[i]->texts.size());
        for (const std::string_view text : chunks[i]->texts) {
            const auto known = codes.find(text);
            final[i].push_back(known != codes.end() ? known->second : codes.at(toUtf8(text)));
        }
    }
    return final;
}

} // namespace

void readTextColumns(const DelimitedTable& table, const FileBytes& file, unsigned threads,
                     std::span<TextColumn> columns) {
    if (columns.empty()) return;
    const std::vector<RowChunk>& chunks = table.index.chunks;
    std::vector<TextColumn*> wanted(table.format.columns, nullptr);
    for (TextColumn& column : columns)
        wanted[column.column0] = &column;
    std::size_t lastColumn = 0;
    for (const TextColumn& column : columns)
        lastColumn = std::max(lastColumn, column.column0);

    std::vector<std::vector<LocalTexts>> locals(chunks.size());
    forEachInOrder(chunks.size(), threads, [&](std::size_t i) {
        table.checkStop();
        std::vector<LocalTexts> texts(columns.size());
        auto row = static_cast<std::size_t>(chunks[i].firstRow);
        walkCells(
            table, chunks[i], lastColumn,
            [&](std::size_t column, std::string_view text, bool vanishes) {
                TextColumn* const target = wanted[column];
                if (target == nullptr) return;
                const auto place = static_cast<std::size_t>(target - columns.data());
                target->cells[row] = isMissingText(text)
                                         ? std::numeric_limits<double>::quiet_NaN()
                                         : static_cast<double>(texts[place].codeOf(text, vanishes));
            },
            [&] { ++row; });
        for (LocalTexts& each : texts)
            each.forgetCodes();
        locals[i] = std::move(texts);
        file.release(chunks[i].begin, chunks[i].end);
    });

    for (std::size_t place = 0; place < columns.size(); ++place) {
        std::vector<LocalTexts*> texts;
        texts.reserve(locals.size());
        for (std::vector<LocalTexts>& local : locals)
            texts.push_back(&local[place]);
        const auto codes = mergeTexts(texts, columns[place].labels);
        forEachInOrder(chunks.size(), threads, [&](std::size_t i) {
            double* const cells = columns[place].cells + chunks[i].firstRow;
            for (std::int64_t row = 0; row < chunks[i].rowCount; ++row)
                if (cells[row] >= 0) cells[row] = codes[i][static_cast<std::size_t>(cells[row])];
        });
    }
}

CaseNames readCaseNames(const DelimitedTable& table, const FileBytes& file, unsigned threads) {
    const std::vector<RowChunk>& chunks = table.index.chunks;
    std::vector<CaseNames> parts(chunks.size());
    forEachInOrder(chunks.size(), threads, [&](std::size_t i) {
        table.checkStop();
        CaseNames names;
        walkCells(
            table, chunks[i], 0,
            [&](std::size_t, std::string_view text, bool) {
                names.text += toUtf8(text);
                names.ends.push_back(names.text.size());
            },
            [] {});
        parts[i] = std::move(names);
        file.release(chunks[i].begin, chunks[i].end);
    });
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

} // namespace korvana
