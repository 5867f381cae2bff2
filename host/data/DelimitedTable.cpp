#include "host/data/DelimitedTable.h"

#include "host/data/CellTally.h"
#include "host/data/PlainNumber.h"

#include <algorithm>
#include <limits>

namespace korvana {
namespace {

static_assert(chunkMargin >= digitsMargin);

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

class ChunkReader {
public:
    ChunkReader(const DelimitedTable& table, const ChunkText& chunk, std::span<double* const> columns,
                std::span<ColumnTally> tallies)
        : table_(table), chunk_(chunk.rows), columns_(columns), tallies_(tallies), begin_(chunk.text.data()),
          end_(begin_ + chunk.text.size()), separator_(table.format.dialect.separator),
          watchMarks_(table.format.dialect.comma), plain_(table.format.dialect, end_),
          line_(chunk.rows.firstLine) {}

    std::int64_t run() {
        for (const char* p = begin_; p < end_;)
            p = readRow(p);
        return rows_;
    }

private:
    const char* readRow(const char* p) {
        const char* const rowBegin = p;
        const std::int64_t rowLine = line_;
        if (rows_ == chunk_.rowCount) fail(0, "the quotation marks of this row do not match; check them");
        const auto row = static_cast<std::size_t>(chunk_.firstRow + rows_);
        for (std::size_t column = 0;; ++p) {
            double value = notANumber;
            const PlainNumber number = plain_.read(p);
            const char* next = number.next;
            if (next != nullptr) {
                value = number.value;
                tallies_[column].addNumber();
                if (watchMarks_ && number.mark != nullptr)
                    tallyMark(*number.mark, number.sure(), line_, number.text(), tallies_[column]);
            } else {
                const RawCell cell = readCell(p, end_, separator_, scratch_);
                checkQuotes(cell, column);
                next = cell.next;
                const bool lineEnds = next == end_ || *next == '\n';
                if (column == 0 && columns_.size() > 1 && lineEnds && cell.text.empty() && !cell.quoted) {
                    ++line_;
                    return next == end_ ? next : next + 1;
                }
                value = tallyCell(cell.text, line_, table_.format.dialect, tallies_[column]);
                if (cell.quoted) line_ += countLineFeeds({p, static_cast<std::size_t>(next - p)});
            }
            columns_[column][row] = value;
            ++column;
            const bool lineEnds = next == end_ || *next == '\n';
            if (lineEnds != (column == columns_.size())) failRagged(rowBegin, rowLine);
            p = next;
            if (lineEnds) break;
        }
        ++rows_;
        ++line_;
        return p == end_ ? p : p + 1;
    }

    void checkQuotes(const RawCell& cell, std::size_t column) const {
        if (cell.fault == CellFault::OpenQuote) {
            fail(column, "the quotation mark that opens this cell is never closed; close it, or double it if "
                         "it belongs to the text");
        }
        if (cell.fault == CellFault::TextAfterQuote) {
            fail(column, "there is text behind the closing quotation mark; double the quotation marks inside "
                         "the cell");
        }
    }

    [[noreturn]] void fail(std::size_t column, const std::string& what) const {
        throw table_.cellError(line_, column, what);
    }

    [[noreturn]] void failRagged(const char* p, std::int64_t line) const {
        std::size_t cells = 0;
        for (std::string scratch;; ++p) {
            const RawCell cell = readCell(p, end_, separator_, scratch);
            checkQuotes(cell, cells);
            ++cells;
            p = cell.next;
            if (p == end_ || *p == '\n') break;
        }
        const std::size_t expected = columns_.size();
        const char* const where = table_.format.header.empty() ? "the first row" : "the header";
        std::string what = std::to_string(cells) + (cells == 1 ? " cell where " : " cells where ") + where +
                           " has " + std::to_string(expected) + "; ";
        if (cells < expected) {
            what += "add the missing ones (a missing value may be left empty)";
        } else if (separator_ == ',') {
            what += "put a cell that contains a comma in quotes, or separate the cells with semicolons if "
                    "the comma is "
                    "the decimal mark";
        } else {
            what += "put a cell that contains the separator in quotes";
        }
        throw DataError(table_.file, line, static_cast<std::int64_t>(std::min(cells, expected + 1)), what);
    }

    const DelimitedTable& table_;
    const RowChunk& chunk_;
    std::span<double* const> columns_;
    std::span<ColumnTally> tallies_;
    const char* begin_;
    const char* end_;
    char separator_;
    bool watchMarks_;
    PlainNumberReader plain_;
    std::int64_t line_; ///< on which the cell begins that is read
    std::int64_t rows_ = 0;
    std::string scratch_;
};

} // namespace

DataError DelimitedTable::cellError(std::int64_t line, std::size_t column0, const std::string& what) const {
    std::string message;
    if (column0 < names.size() && !names[column0].empty())
        message.append("variable '").append(names[column0]).append("': ");
    message += what;
    return {file, line, static_cast<std::int64_t>(column0) + 1, message};
}

std::int64_t readChunk(const DelimitedTable& table, const ChunkText& chunk, std::span<double* const> columns,
                       std::span<ColumnTally> tallies) {
    return ChunkReader(table, chunk, columns, tallies).run();
}

} // namespace korvana
