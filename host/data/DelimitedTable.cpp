#include "host/data/DelimitedTable.h"

#include "host/data/TextEncoding.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <system_error>

namespace korvana {
namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

constexpr std::array<double, 23> powersOfTen{1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                             1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                             1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

bool isDigit(char c) {
    return static_cast<unsigned char>(c - '0') < 10;
}

struct PlainNumber {
    const char* next = nullptr; ///< at the separator, line feed or end; none: not a plain number
    double value = 0;
    char mark = 0;
};

/** Reads a number that fills its cell without quotes or blanks. */
class PlainNumberReader {
public:
    PlainNumberReader(const Dialect& dialect, const char* end)
        : end_(end), separator_(dialect.separator), point_(dialect.point ? '.' : ','),
          comma_(dialect.comma ? ',' : '.') {}

    PlainNumber read(const char* p) const {
        PlainNumber number;
        const bool negative = p < end_ && *p == '-';
        if (negative) ++p;
        const char* const digits = p;
        std::uint64_t mantissa = 0;
        for (; p < end_ && isDigit(*p); ++p)
            mantissa = 10 * mantissa + static_cast<unsigned>(*p - '0');
        std::ptrdiff_t length = p - digits;
        std::ptrdiff_t decimals = 0;
        if (p < end_ && (*p == point_ || *p == comma_) && *p != separator_) {
            number.mark = *p++;
            const char* const after = p;
            for (; p < end_ && isDigit(*p); ++p)
                mantissa = 10 * mantissa + static_cast<unsigned>(*p - '0');
            decimals = p - after;
            length += decimals;
        }
        if (length == 0) return number;
        // Integers up to 2^53 and powers of ten up to 22 are exact, so that one division rounds correctly
        // (Clinger, How to read floating point numbers accurately, 1990).
        constexpr std::uint64_t exact = std::uint64_t{1} << 53U;
        if (length <= 19 && mantissa <= exact && decimals <= 22 && endsCell(p)) {
            number.value = static_cast<double>(mantissa) / powersOfTen[static_cast<std::size_t>(decimals)];
            number.next = p;
        } else if (number.mark != ',' && point_ == '.') {
            const auto read = std::from_chars(digits, end_, number.value);
            if (read.ec == std::errc() && endsCell(read.ptr)) number.next = read.ptr;
        }
        if (negative) number.value = -number.value;
        if (number.next != nullptr && number.next < end_ && *number.next == '\r') ++number.next;
        return number;
    }

private:
    bool endsCell(const char* p) const {
        if (p == end_ || *p == separator_ || *p == '\n') return true;
        return *p == '\r' && (p + 1 == end_ || p[1] == '\n');
    }

    const char* end_;
    char separator_;
    char point_;
    char comma_;
};

ColumnTally::Sort sortOf(CellKind kind) {
    switch (kind) {
    case CellKind::Number:
        return ColumnTally::Number;
    case CellKind::Date:
        return ColumnTally::Date;
    case CellKind::BadDate:
        return ColumnTally::BadDate;
    case CellKind::TooBig:
        return ColumnTally::TooBig;
    default:
        return ColumnTally::Text;
    }
}

class ChunkReader {
public:
    ChunkReader(const DelimitedTable& table, const RowChunk& chunk, std::span<double* const> columns)
        : table_(table), chunk_(chunk), columns_(columns), base_(table.text.data()), end_(base_ + chunk.end),
          separator_(table.format.dialect.separator),
          watchMarks_(table.format.dialect.point && table.format.dialect.comma),
          plain_(table.format.dialect, end_) {
        cells_.tallies.resize(columns.size());
    }

    ChunkCells run() {
        for (const char* p = base_ + chunk_.begin; p < end_;)
            p = readRow(p);
        return std::move(cells_);
    }

private:
    const char* readRow(const char* p) {
        const char* const rowBegin = p;
        if (cells_.rows == chunk_.rowCount)
            fail(p, 0, "the quotation marks of this row do not match; check them");
        const auto row = static_cast<std::size_t>(chunk_.firstRow + cells_.rows);
        for (std::size_t column = 0;; ++p) {
            double value = notANumber;
            const PlainNumber number = plain_.read(p);
            const char* next = number.next;
            if (next != nullptr) {
                value = number.value;
                count(column, ColumnTally::Number, p, number.mark);
            } else {
                const RawCell cell = readCell(p, end_, separator_, scratch_);
                checkQuotes(cell, p, column);
                next = cell.next;
                const bool lineEnds = next == end_ || *next == '\n';
                if (column == 0 && columns_.size() > 1 && lineEnds && cell.text.empty() && !cell.quoted)
                    return next == end_ ? next : next + 1;
                value = readOther(cell.text, p, column);
            }
            columns_[column][row] = value;
            ++column;
            const bool lineEnds = next == end_ || *next == '\n';
            if (lineEnds != (column == columns_.size())) failRagged(rowBegin);
            p = next;
            if (lineEnds) break;
        }
        ++cells_.rows;
        return p == end_ ? p : p + 1;
    }

    double readOther(std::string_view text, const char* p, std::size_t column) {
        const CellValue cell = classifyCell(text, table_.format.dialect);
        if (cell.kind == CellKind::Missing) return notANumber;
        count(column, sortOf(cell.kind), p, cell.mark);
        return cell.kind == CellKind::Number || cell.kind == CellKind::Date ? cell.value : notANumber;
    }

    void count(std::size_t column, ColumnTally::Sort sort, const char* p, char mark) {
        ColumnTally& tally = cells_.tallies[column];
        tally.add(sort, offset(p));
        if (watchMarks_ && mark != 0)
            tally.add(mark == ',' ? ColumnTally::Comma : ColumnTally::Point, offset(p));
    }

    void checkQuotes(const RawCell& cell, const char* p, std::size_t column) const {
        if (cell.fault == CellFault::OpenQuote) {
            fail(p, column,
                 "the quotation mark that opens this cell is never closed; close it, or double it if it "
                 "belongs to the text");
        }
        if (cell.fault == CellFault::TextAfterQuote) {
            fail(p, column,
                 "there is text behind the closing quotation mark; double the quotation marks inside the "
                 "cell");
        }
    }

    [[noreturn]] void fail(const char* p, std::size_t column, const std::string& what) const {
        throw table_.cellError(offset(p), column, what);
    }

    [[noreturn]] void failRagged(const char* p) const {
        const std::size_t rowBegin = offset(p);
        std::size_t cells = 0;
        for (std::string scratch;; ++p) {
            const RawCell cell = readCell(p, end_, separator_, scratch);
            checkQuotes(cell, p, cells);
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
        throw DataError(table_.file, table_.index.lineOf(table_.text, rowBegin),
                        static_cast<std::int64_t>(std::min(cells, expected + 1)), what);
    }

    std::size_t offset(const char* p) const { return static_cast<std::size_t>(p - base_); }

    const DelimitedTable& table_;
    const RowChunk& chunk_;
    std::span<double* const> columns_;
    const char* base_;
    const char* end_;
    char separator_;
    bool watchMarks_;
    PlainNumberReader plain_;
    std::string scratch_;
    ChunkCells cells_;
};

} // namespace

DataError DelimitedTable::cellError(std::size_t offset, std::size_t column0, const std::string& what) const {
    std::string message;
    if (column0 < names.size()) message.append("variable '").append(names[column0]).append("': ");
    message += what;
    return {file, index.lineOf(text, offset), static_cast<std::int64_t>(column0) + 1, message};
}

std::string_view DelimitedTable::cellAt(std::size_t offset, std::string& scratch) const {
    return readCell(text.data() + offset, text.data() + format.end, format.dialect.separator, scratch).text;
}

ChunkCells readChunk(const DelimitedTable& table, const RowChunk& chunk, std::span<double* const> columns) {
    return ChunkReader(table, chunk, columns).run();
}

VariableKind decideKind(const DelimitedTable& table, std::size_t column0, const ColumnTally& tally) {
    const auto& count = tally.count;
    const auto& first = tally.first;
    std::string scratch;
    const auto cell = [&](std::size_t offset) {
        return std::string("'") + brief(table.cellAt(offset, scratch)) + "'";
    };
    if (count[ColumnTally::Text] > 0) return VariableKind::Text;
    if (count[ColumnTally::Number] == 0) {
        if (count[ColumnTally::TooBig] > 0) return VariableKind::Text;
        if (count[ColumnTally::Date] == 0)
            return count[ColumnTally::BadDate] > 0 ? VariableKind::Text : VariableKind::Number;
        if (count[ColumnTally::BadDate] > 0) {
            throw table.cellError(first[ColumnTally::BadDate], column0,
                                  cell(first[ColumnTally::BadDate]) +
                                      " is no day of the calendar; correct the date or leave the cell empty");
        }
        return VariableKind::Date;
    }
    if (count[ColumnTally::Date] + count[ColumnTally::BadDate] > 0) return VariableKind::Text;
    if (count[ColumnTally::TooBig] > 0) {
        throw table.cellError(
            first[ColumnTally::TooBig], column0,
            cell(first[ColumnTally::TooBig]) +
                " is infinite or above the greatest number (about 1.8e308); correct it or leave the "
                "cell empty");
    }
    if (count[ColumnTally::Comma] > 0 && count[ColumnTally::Point] > 0) {
        const bool pointLater = first[ColumnTally::Point] > first[ColumnTally::Comma];
        const std::size_t later = first[pointLater ? ColumnTally::Point : ColumnTally::Comma];
        const std::size_t earlier = first[pointLater ? ColumnTally::Comma : ColumnTally::Point];
        std::string other;
        const std::string before(table.cellAt(earlier, other));
        throw table.cellError(later, column0,
                              cell(later) + " has another decimal mark than '" + brief(before) +
                                  "' in line " + std::to_string(table.index.lineOf(table.text, earlier)) +
                                  "; use the same mark in the whole column and no thousands separators");
    }
    return VariableKind::Number;
}

} // namespace korvana
