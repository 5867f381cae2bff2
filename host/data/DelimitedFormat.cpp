#include "host/data/DelimitedFormat.h"

#include "host/data/DataError.h"
#include "host/data/NameMatch.h"
#include "host/data/RowCutter.h"
#include "host/data/TextEncoding.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <optional>

namespace korvana {
namespace {

// A comma may also be a decimal mark: it comes last.
constexpr std::array<char, 4> separators{'\t', ';', '|', ','};

using Counts = std::array<int, separators.size()>;

/// Counts the separators of the first rows, outside quotes. Only whole rows are taken, unless there is only
/// one.
std::vector<Counts> countSeparators(std::string_view text) {
    constexpr std::size_t mostRows = 50;
    constexpr std::size_t mostBytes = 1 << 20;
    std::vector<Counts> rows;
    Counts row{};
    bool quoted = false;
    bool cellBegins = true;
    bool blank = true;
    std::size_t i = 0;
    for (; i < text.size() && i < mostBytes && rows.size() < mostRows; ++i) {
        const char c = text[i];
        if (quoted) {
            quoted = c != '"'; // a doubled mark closes and opens again at once
            continue;
        }
        const auto* const separator = std::find(separators.begin(), separators.end(), c);
        if (c == '\n') {
            if (!blank) rows.push_back(row);
            row = {};
            blank = true;
        } else if (separator != separators.end()) {
            ++row[static_cast<std::size_t>(separator - separators.begin())];
        } else if (c == '"') {
            quoted = cellBegins || text[i - 1] == '"';
        }
        cellBegins = c == '\n' || separator != separators.end() || (cellBegins && c == ' ');
        blank = blank ? c == '\n' || c == ' ' || c == '\r' : c == '\n';
    }
    if (!blank && (i == text.size() || rows.empty())) rows.push_back(row);
    return rows;
}

/// The separator that occurs equally often in each of the first rows; else the most frequent one.
char findSeparator(std::string_view text) {
    const std::vector<Counts> rows = countSeparators(text);
    Counts total{};
    for (std::size_t k = 0; k < separators.size(); ++k) {
        bool equal = !rows.empty() && rows.front()[k] > 0;
        for (const Counts& row : rows) {
            equal = equal && row[k] == rows.front()[k];
            total[k] += row[k];
        }
        if (equal) return separators[k];
    }
    const auto* const most = std::max_element(total.begin(), total.end());
    return *most > 0 ? separators[static_cast<std::size_t>(most - total.begin())] : ',';
}

bool canSeparate(char c) {
    const auto byte = static_cast<unsigned char>(c);
    const bool letterOrDigit = std::isalnum(byte) != 0 || byte >= 0x80;
    return !letterOrDigit && c != '\0' && std::string_view("\"'\r\n .-+_").find(c) == std::string_view::npos;
}

/// Reads a first line "sep=;", which spreadsheet programs write, and skips it.
/// @param told  the separator is already known
std::optional<char> readSeparatorLine(std::string_view text, bool told, const std::string& file,
                                      DelimitedFormat& format) {
    const std::size_t feed = text.find('\n', format.begin);
    if (feed == std::string_view::npos) return std::nullopt;
    std::string_view line = text.substr(format.begin, feed - format.begin);
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (line.size() > 2 && line.front() == '"' && line.back() == '"') line = line.substr(1, line.size() - 2);
    constexpr std::string_view key = "sep=";
    if (!equalIgnoringCase(line.substr(0, key.size()), key)) return std::nullopt;
    const std::string_view sign = line.substr(key.size());
    if (sign.size() != 1 && std::any_of(sign.begin(), sign.end(), [](char c) {
            return std::find(separators.begin(), separators.end(), c) != separators.end();
        }))
        return std::nullopt; // a line of names
    if (!told && (sign.size() != 1 || !canSeparate(sign.front()))) {
        throw DataError(
            file, 1, 0,
            "the line '" + brief(line) +
                "' should name the sign between the cells, such as sep=; but does not; correct it, or "
                "say which sign it is (--separator)");
    }
    format.begin = feed + 1;
    ++format.firstLine;
    return sign.empty() ? std::nullopt : std::optional(sign.front());
}

Dialect findDialect(std::string_view text, const ReadOptions& options, const std::string& file) {
    if (options.separator && !canSeparate(*options.separator)) {
        throw DataError(file, 0, 0,
                        "this character cannot separate cells; choose comma, semicolon, tab or another "
                        "sign such as |");
    }
    if (options.decimalMark && *options.decimalMark != '.' && *options.decimalMark != ',')
        throw DataError(file, 0, 0, "the decimal mark is neither a point nor a comma; choose one of them");
    Dialect dialect;
    dialect.separator = options.separator ? *options.separator : findSeparator(text);
    dialect.point = options.decimalMark != ',';
    dialect.comma = options.decimalMark ? *options.decimalMark == ',' : dialect.separator != ',';
    dialect.markTold = options.decimalMark.has_value();
    dialect.dates = options.dates;
    return dialect;
}

/// Skips blank lines; false when nothing follows them.
bool skipBlankLines(std::string_view text, DelimitedFormat& format) {
    for (std::size_t i = format.begin; i < text.size(); ++i) {
        if (!isBlankCharacter(text[i], format.dialect.separator)) return true;
        if (text[i] != '\n') continue;
        format.begin = i + 1;
        ++format.firstLine;
    }
    return false;
}

struct FirstRow {
    bool ends = false; ///< before the end of the text
    std::vector<std::string> cells;
    std::optional<std::string> text;  ///< the first cell that is neither empty nor a value
    std::optional<std::string> value; ///< the first number, date, NA or lone point
    std::size_t next = 0;             ///< offset of the row that follows
};

[[noreturn]] void refuseReturns(std::string_view text, const RawCell& cell, const std::string& file,
                                std::int64_t line, std::int64_t number) {
    const bool feeds = text.find('\n') != std::string_view::npos;
    const bool doubled = feeds && *cell.next == '\n' &&
                         cell.text.find_first_not_of('\r', cell.text.find('\r')) == std::string_view::npos;
    throw DataError(file, line, number,
                    doubled ? "the line ends with several carriage returns, as when a file is converted "
                              "twice; save it with line feeds (LF or CR LF)"
                    : feeds ? "there is a carriage return inside this cell; take it out, or put the cell in "
                              "quotes"
                            : "the lines end with carriage returns alone; save the file with line feeds");
}

/// @param whole  the text ends here; otherwise a row that does not end in it may be half a row
FirstRow readFirstRow(std::string_view text, bool whole, const DelimitedFormat& format,
                      const std::string& file) {
    FirstRow row;
    std::string scratch;
    const char* p = text.data() + format.begin;
    const char* const end = text.data() + text.size();
    for (;;) {
        const RawCell cell = readCell(p, end, format.dialect.separator, scratch);
        if (cell.next == end && !whole) return row;
        const auto number = static_cast<std::int64_t>(row.cells.size()) + 1;
        if (cell.fault == CellFault::OpenQuote) {
            throw DataError(file, format.firstLine, number,
                            "the quotation mark that opens this cell is never closed");
        }
        if (cell.fault == CellFault::TextAfterQuote) {
            throw DataError(file, format.firstLine, number,
                            "there is text behind the closing quotation mark; double the quotation marks "
                            "inside the cell");
        }
        if (!cell.quoted && cell.text.find('\r') != std::string_view::npos)
            refuseReturns(text, cell, file, format.firstLine, number);
        const CellKind kind = classifyCell(cell.text, format.dialect).kind;
        const bool text_ = kind == CellKind::Text || kind == CellKind::BadDate || kind == CellKind::TooBig;
        if (auto& first = text_ ? row.text : row.value; !first && !cell.text.empty()) first = cell.text;
        if (const auto byte = byteOfNoCharacter(cell.text))
            throw DataError(file, format.firstLine, number,
                            "'" + brief(cell.text) + "' " + noCharacter(*byte));
        row.cells.emplace_back(cell.text);
        p = cell.next;
        if (p == end || *p == '\n') break;
        ++p;
    }
    row.next = static_cast<std::size_t>(p - text.data()) + (p < end ? 1 : 0);
    row.ends = true;
    return row;
}

} // namespace

std::optional<DelimitedFormat> findFormat(std::string_view text, bool whole, const ReadOptions& options,
                                          const std::string& file) {
    constexpr std::size_t beginning = std::size_t{64} << 10;
    refuseNul(text.substr(0, beginning), 1, file); // the other bytes are checked later
    DelimitedFormat format;
    if (text.starts_with("\xEF\xBB\xBF")) format.begin = 3;
    ReadOptions known = options;
    if (const auto named = readSeparatorLine(text, known.separator.has_value(), file, format);
        named && !known.separator)
        known.separator = named;
    format.dialect = findDialect(text.substr(format.begin), known, file);
    if (!skipBlankLines(text, format)) {
        if (!whole) return std::nullopt;
        throw DataError(file, 0, 0, "the file has no text but blanks; give it a line of names and the cases");
    }
    FirstRow first = readFirstRow(text, whole, format, file);
    if (!first.ends) return std::nullopt;
    format.columns = first.cells.size();
    const bool header = options.header == HeaderLine::Yes ||
                        (options.header == HeaderLine::Automatic && first.text && !first.value);
    if (!header) {
        if (options.header == HeaderLine::Automatic && first.text) {
            format.textInFirstRow = *first.text;
            format.valueInFirstRow = *first.value;
        }
        return format;
    }
    const std::int64_t headerLine = format.firstLine;
    format.firstLine += countLineFeeds(text.substr(format.begin, first.next - format.begin));
    format.begin = first.next;
    format.header = std::move(first.cells);
    format.caseNames = format.columns > 1 && format.header.front().empty();
    DelimitedFormat rows = format;
    if (!skipBlankLines(text, rows)) {
        if (!whole) return std::nullopt;
        throw DataError(file, headerLine, 0,
                        "there are no cases below the line of variable names; add them, or read the file "
                        "without a header");
    }
    return format.columns > 1 ? rows : format;
}

} // namespace korvana
