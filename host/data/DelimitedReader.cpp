#include "host/data/DelimitedReader.h"

#include "host/data/DelimitedTable.h"
#include "host/data/TextColumns.h"
#include "host/data/TextEncoding.h"
#include "host/data/VariableNames.h"
#include "host/data/Workers.h"

#include <algorithm>
#include <cstring>
#include <thread>
#include <utility>

namespace korvana {
namespace {

constexpr auto mostVariables = static_cast<std::size_t>(maxVariables);

unsigned threadsFor(const ReaderTuning& tuning, std::size_t bytes) {
    if (tuning.threads > 0) return tuning.threads;
    constexpr std::size_t bigFile = 4 << 20; // below, starting a thread does not pay
    return bytes < bigFile ? 1 : std::clamp(std::thread::hardware_concurrency(), 1U, 8U);
}

class Reading {
public:
    Reading(const FileBytes& file, const std::string& name, const ReadOptions& options,
            const ReaderTuning& tuning)
        : file_(file) {
        table_.file = name;
        table_.stop = options.stop;
        table_.format = findFormat(file.view(), options, name);
        const DelimitedFormat& format = table_.format;
        table_.text = file.view().substr(0, format.end);
        threads_ = threadsFor(tuning, format.end);
        first_ = format.caseNames ? 1 : 0;
        if (format.columns - first_ > mostVariables) {
            throw DataError(name, 1, 0,
                            "the file has " + std::to_string(format.columns - first_) +
                                " variables; the limit is " + std::to_string(mostVariables) +
                                ", leave out those that are not needed");
        }
        table_.names = variableNames(format.header, format.columns, first_, notes_);
        table_.index = indexRows(table_.text, format.begin, format.firstLine, format.dialect.separator,
                                 std::max<std::size_t>(tuning.chunkBytes, 1), file);
        refuseNul(table_.text, table_.index.nul, name);
        if (table_.index.rowCount > tuning.maxCases) {
            throw DataError(name, 0, 0,
                            "the file has " + std::to_string(table_.index.rowCount) +
                                " cases; the limit is " + std::to_string(tuning.maxCases) +
                                ", split the file");
        }
    }

    DataSet run() {
        readNumbers();
        DataSet data(table_.file, static_cast<int>(table_.index.rowCount));
        std::vector<Variable> variables(columns_.size());
        std::vector<TextColumn> texts;
        for (std::size_t i = first_; i < columns_.size(); ++i) {
            variables[i].name = table_.names[i];
            variables[i].kind = decideKind(table_, i, tallies_[i]);
            if (variables[i].kind != VariableKind::Text) continue;
            noteMixture(i);
            texts.push_back({i, columns_[i].data(), {}});
        }
        readTextColumns(table_, file_, threads_, texts);
        for (TextColumn& text : texts)
            variables[text.column0].valueLabels = std::move(text.labels);
        if (table_.format.caseNames && !namesAreNumbers())
            data.setCaseNames(readCaseNames(table_, file_, threads_));
        noteBlankSeparators();
        for (std::size_t i = first_; i < columns_.size(); ++i)
            data.addVariable(std::move(variables[i]), std::move(columns_[i]));
        for (std::string& note : notes_)
            data.addNote(std::move(note));
        return data;
    }

private:
    void readNumbers() {
        std::vector<double*> cells;
        for (std::size_t i = 0; i < table_.format.columns; ++i) {
            columns_.emplace_back(static_cast<std::size_t>(table_.index.rowCount));
            cells.push_back(columns_.back().data());
        }
        std::vector<ChunkCells> chunks(table_.index.chunks.size());
        forEachInOrder(chunks.size(), threads_, [&](std::size_t i) {
            table_.checkStop();
            const RowChunk& chunk = table_.index.chunks[i];
            chunks[i] = readChunk(table_, chunk, cells);
            file_.release(chunk.begin, chunk.end);
        });
        tallies_.resize(columns_.size());
        for (const ChunkCells& chunk : chunks) {
            for (std::size_t i = 0; i < tallies_.size(); ++i)
                tallies_[i].append(chunk.tallies[i]);
        }
        closeGaps(chunks);
    }

    /** Blank lines were counted as rows: moves the cells behind them up. */
    void closeGaps(const std::vector<ChunkCells>& chunks) {
        std::int64_t rows = 0;
        for (std::size_t i = 0; i < chunks.size(); ++i) {
            RowChunk& chunk = table_.index.chunks[i];
            const auto bytes = static_cast<std::size_t>(chunks[i].rows) * sizeof(double);
            if (rows != chunk.firstRow) {
                for (Column& column : columns_)
                    std::memmove(column.data() + rows, column.data() + chunk.firstRow, bytes);
            }
            chunk.firstRow = rows;
            chunk.rowCount = chunks[i].rows;
            rows += chunks[i].rows;
        }
        table_.index.rowCount = rows;
    }

    void noteMixture(std::size_t column) {
        const ColumnTally& tally = tallies_[column];
        const bool numbers = tally.count[ColumnTally::Number] > 0;
        const auto regular = tally.count[numbers ? ColumnTally::Number : ColumnTally::Date];
        if (regular == 0) return;
        std::size_t first = ColumnTally::nowhere;
        for (const auto sort :
             {ColumnTally::Text, ColumnTally::TooBig, ColumnTally::BadDate, ColumnTally::Date})
            if (numbers || sort != ColumnTally::Date) first = std::min(first, tally.first[sort]);
        std::string scratch;
        const std::string cell = brief(table_.cellAt(first, scratch));
        const std::int64_t other = tally.filled() - regular;
        notes_.push_back(
            "variable '" + table_.names[column] + "': " + std::to_string(other) + " of " +
            std::to_string(tally.filled()) + (other == 1 ? " cells is not a " : " cells are not ") +
            (numbers ? "number" : "date") + (other == 1 ? "" : "s") + " (first: '" + cell + "', line " +
            std::to_string(table_.index.lineOf(table_.text, first)) + "); read as text codes");
    }

    /** A single column of texts with blanks inside is likely a table separated by blanks. */
    void noteBlankSeparators() {
        const bool suspect = table_.format.columns == 1 && !table_.format.header.empty() &&
                             tallies_[0].count[ColumnTally::Text] == table_.index.rowCount &&
                             table_.format.header.front().find_first_of(" \t") != std::string::npos;
        if (suspect) {
            notes_.push_back("the file has a single column, '" + table_.names[0] +
                             "'; if blanks separate its cells, save it with commas, semicolons or tabs");
        }
    }

    /** Names that only repeat the number of the case are not worth their memory. */
    bool namesAreNumbers() {
        const std::int64_t rows = table_.index.rowCount;
        if (tallies_[0].count[ColumnTally::Number] != rows) return false;
        const double* const cells = columns_[0].data();
        for (std::int64_t i = 0; i < rows; ++i)
            if (cells[i] != static_cast<double>(i + 1)) return false;
        return true;
    }

    const FileBytes& file_;
    DelimitedTable table_;
    unsigned threads_ = 1;
    std::size_t first_ = 0; ///< the first column that is a variable
    std::vector<Column> columns_;
    std::vector<ColumnTally> tallies_;
    std::vector<std::string> notes_;
};

} // namespace

DataSet readDelimited(const FileBytes& file, const std::string& name, const ReadOptions& options,
                      const ReaderTuning& tuning) {
    return Reading(file, name, options, tuning).run();
}

} // namespace korvana
