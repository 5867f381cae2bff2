#include "host/data/DelimitedReader.h"

#include "host/data/ColumnKinds.h"
#include "host/data/DelimitedTable.h"
#include "host/data/GrowingColumns.h"
#include "host/data/LayoutNotes.h"
#include "host/data/TextColumns.h"
#include "host/data/TextEncoding.h"
#include "host/data/VariableNames.h"
#include "host/data/Workers.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>

namespace korvana {
namespace {

constexpr auto mostVariables = static_cast<std::size_t>(maxVariables);

/// The beginning of a text, as much as is needed to find its format.
struct Head {
    std::string text;
    bool whole = false; ///< the text is complete

    void grow(ByteSource& source, std::size_t bytes) {
        const std::size_t before = text.size();
        text.resize(bytes);
        const std::size_t count = source.readFully({text.data() + before, bytes - before});
        whole = before + count < bytes;
        text.resize(before + count);
    }
};

DelimitedFormat findFormat(Head& head, ByteSource& source, const ReadOptions& options) {
    constexpr std::size_t beginning = std::size_t{1} << 20;
    const std::size_t known = source.size();
    for (std::size_t bytes = known > 0 && known < beginning ? known + 1 : beginning;; bytes *= 2) {
        if (bytes > mostRowBytes) {
            throw DataError(source.name(), 1, 0,
                            "no row ends within 256 MB; check whether a quotation mark is never closed, and "
                            "the line ends");
        }
        head.grow(source, bytes);
        if (auto format = findFormat(head.text, head.whole, options, source.name())) return *format;
    }
}

unsigned threadsFor(const ReaderTuning& tuning, std::size_t bytes) {
    if (tuning.threads > 0) return tuning.threads;
    constexpr std::size_t bigFile = 4 << 20; // below this, a thread is not worth starting
    return bytes < bigFile ? 1 : std::min(usableCores(), 8U);
}

/// What the threads that read the numbers share.
struct NumberPass {
    ByteSource& source;
    DelimitedTable& table;
    RowCutter cutter;
    GrowingColumns columns;
    std::int64_t maxCases;
    std::size_t bytesCut = 0;

    void makeRoom(const RowChunk& chunk) {
        bytesCut += chunk.bytes;
        const std::int64_t rows = chunk.firstRow + chunk.rowCount;
        if (rows > maxCases) {
            throw DataError(source.name(), 0, 0,
                            "the file has more than " + std::to_string(maxCases) +
                                " cases, which is the limit; split the file");
        }
        // An estimate of the rows from those seen so far; for a pipe, half as many again.
        const auto seen = static_cast<double>(bytesCut);
        const double known = static_cast<double>(source.size()) - static_cast<double>(table.format.begin);
        const double expected = static_cast<double>(rows) * (1.02 * std::max(known, 1.5 * seen) / seen);
        columns.require(static_cast<std::size_t>(rows),
                        static_cast<std::size_t>(std::min(expected, static_cast<double>(maxCases))));
    }
};

class NumberWorker final : public Worker {
public:
    explicit NumberWorker(NumberPass& pass) : tallies(pass.table.format.columns), pass_(pass) {}

    bool take() override {
        pass_.table.checkStop();
        if (!pass_.cutter.next(chunk_)) return false;
        pass_.makeRoom(chunk_.rows);
        place_ = &pass_.table.chunks.emplace_back(chunk_.rows);
        return true;
    }

    void work() override {
        const auto hold = pass_.columns.hold();
        // From here on counted without blank lines, which were not known when the chunk was cut.
        place_->rowCount = readChunk(pass_.table, chunk_, pass_.columns.cells(), tallies);
    }

    std::vector<ColumnTally> tallies;

private:
    NumberPass& pass_;
    ChunkText chunk_;
    RowChunk* place_ = nullptr;
};

class Reading {
public:
    Reading(ByteSource& source, const ReadOptions& options, const ReaderTuning& tuning)
        : source_(source), tuning_(tuning) {
        table_.file = source.name();
        table_.stop = options.stop;
        table_.format = findFormat(head_, source, options);
        const DelimitedFormat& format = table_.format;
        threads_ = threadsFor(tuning, head_.whole          ? head_.text.size()
                                      : source.size() == 0 ? static_cast<std::size_t>(-1)
                                                           : source.size());
        // No more room than a small text takes.
        if (head_.whole) tuning_.chunkBytes = std::min(tuning_.chunkBytes, head_.text.size() + 1);
        first_ = format.caseNames ? 1 : 0;
        if (format.columns - first_ > mostVariables) {
            throw DataError(table_.file, 1, 0,
                            "the file has " + std::to_string(format.columns - first_) +
                                " variables; the limit is " + std::to_string(mostVariables) +
                                ", leave out those that are not needed");
        }
        headerFound_ = options.header == HeaderLine::Automatic && !format.header.empty();
        table_.names = variableNames(format.header, format.columns, first_, layoutNotes_);
    }

    DataSet run() {
        readNumbers();
        DataSet data(table_.file, static_cast<int>(table_.rowCount()));
        std::vector<Variable> variables(columns_.size());
        noteFirstCase(table_.format, layoutNotes_);
        const std::vector<ColumnKind> kinds = decideKinds(table_, tallies_, first_, notes_);
        std::vector<TextColumn> texts;
        for (std::size_t i = first_; i < columns_.size(); ++i) {
            variables[i].name = table_.names[i];
            variables[i].kind = kinds[i].kind;
            if (variables[i].kind == VariableKind::Text) texts.push_back({i, columns_[i].data(), {}, false});
            if (kinds[i].order) unpackDates(columns_[i].data(), *kinds[i].order);
        }
        CaseNames names;
        const bool named = table_.format.caseNames && !namesAreNumbers();
        const bool foreign = readTextColumns(table_, source_, threads_, texts, named ? &names : nullptr);
        if (headerFound_) noteHeader(table_.format, texts, layoutNotes_);
        for (TextColumn& text : texts) {
            Variable& variable = variables[text.column0];
            variable.valueLabels = std::move(text.labels);
            if (text.areTruths) variable.kind = VariableKind::Number;
        }
        if (named) data.setCaseNames(std::move(names));
        noteSingleColumn(table_, tallies_[0], layoutNotes_);
        if (foreign || !std::all_of(table_.format.header.begin(), table_.format.header.end(), isUtf8))
            noteEncoding(table_, source_, notes_);
        for (std::size_t i = first_; i < columns_.size(); ++i)
            data.addVariable(std::move(variables[i]), std::move(columns_[i]));
        for (std::string& note : layoutNotes_)
            data.addNote(std::move(note), true);
        for (std::string& note : notes_)
            data.addNote(std::move(note));
        data.setLayout(layoutText(table_, tallies_, kinds, first_, threads_));
        source_.checkUnchanged();
        return data;
    }

private:
    void readNumbers() {
        const DelimitedFormat& format = table_.format;
        NumberPass pass{source_, table_,
                        RowCutter(source_, std::move(head_.text), format.begin, format.firstLine,
                                  format.dialect.separator, tuning_.chunkBytes),
                        GrowingColumns(format.columns), tuning_.maxCases};
        std::vector<std::unique_ptr<Worker>> workers;
        std::vector<NumberWorker*> readers;
        for (unsigned i = 0; i < threads_; ++i) {
            auto worker = std::make_unique<NumberWorker>(pass);
            readers.push_back(worker.get());
            workers.push_back(std::move(worker));
        }
        runWorkers(workers);
        tallies_ = std::move(readers.front()->tallies);
        for (std::size_t k = 1; k < readers.size(); ++k)
            for (std::size_t i = 0; i < tallies_.size(); ++i)
                tallies_[i].merge(readers[k]->tallies[i]);
        closeGaps(pass.columns.cells());
        columns_ = pass.columns.take(static_cast<std::size_t>(table_.rowCount()));
    }

    /// Blank lines were counted as rows: moves the cells after them up.
    void closeGaps(std::span<double* const> cells) {
        std::int64_t rows = 0;
        for (RowChunk& chunk : table_.chunks) {
            const auto bytes = static_cast<std::size_t>(chunk.rowCount) * sizeof(double);
            if (rows != chunk.firstRow) {
                for (double* const column : cells)
                    std::memmove(column + rows, column + chunk.firstRow, bytes);
            }
            chunk.firstRow = rows;
            rows += chunk.rowCount;
        }
    }

    void unpackDates(double* cells, DateOrder order) const {
        for (std::int64_t row = 0; row < table_.rowCount(); ++row)
            if (cells[row] < 0) cells[row] = dayNumberOf(unpackedDate(cells[row]), order).value_or(0);
    }

    /// Whether the names only repeat the numbers of the cases: then they are not kept.
    bool namesAreNumbers() {
        const std::int64_t rows = table_.rowCount();
        if (tallies_[0].count[ColumnTally::Number] != rows) return false;
        const double* const cells = columns_[0].data();
        for (std::int64_t i = 0; i < rows; ++i)
            if (cells[i] != static_cast<double>(i + 1)) return false;
        return true;
    }

    ByteSource& source_;
    ReaderTuning tuning_;
    Head head_;
    DelimitedTable table_;
    unsigned threads_ = 1;
    bool headerFound_ = false; ///< detected, not given
    std::size_t first_ = 0;    ///< the first column that is a variable
    std::vector<Column> columns_;
    std::vector<ColumnTally> tallies_;
    std::vector<std::string> notes_;
    std::vector<std::string> layoutNotes_; ///< on columns and names
};

} // namespace

DataSet readDelimited(ByteSource& source, const ReadOptions& options, const ReaderTuning& tuning) {
    try {
        return Reading(source, options, tuning).run();
    } catch (const DataError&) {
        source.checkUnchanged(); // the fault may come from a change of the file
        throw;
    }
}

} // namespace korvana
