#include "host/results/CsvWriter.h"

#include <set>
#include <string>
#include <string_view>

#include "host/results/FormatNumber.h"
#include "host/results/TextPieces.h"
#include "host/results/Utf8.h"

namespace korvana {
namespace {

void appendField(std::string& line, std::string_view text) {
    const bool quoted = text.find_first_of(",\"\r\n") != std::string_view::npos ||
                        (!text.empty() && (text.front() == ' ' || text.back() == ' '));
    if (quoted) line += '"';
    const auto isQuote = [](char c) { return c == '"'; };
    for (movePlain(text, line, isQuote); !text.empty(); movePlain(text, line, isQuote)) {
        const char32_t code = takeCodePoint(text);
        if (code == '"') line += '"';
        appendCodePoint(line, code == 0 ? U' ' : code);
    }
    if (quoted) line += '"';
}

std::string uniqueHeading(std::string heading, std::set<std::string>& taken) {
    const std::string stem = heading;
    for (int number = 2; !taken.insert(heading).second; ++number)
        heading = stem + " " + std::to_string(number);
    return heading;
}

} // namespace

void writeCsv(const Spreadsheet& sheet, std::ostream& out) {
    const bool headed = !sheet.rowHeadings.empty();
    std::set<std::string> taken;
    TextPieces pieces(out);
    std::string& line = pieces.text();
    if (headed) appendField(line, uniqueHeading("Row", taken));
    for (std::size_t column = 0; column < sheet.columns.size(); ++column) {
        if (headed || column > 0) line += ',';
        std::string heading = sheet.columns[column].heading();
        if (heading.empty()) heading = "Column " + std::to_string(column + 1);
        appendField(line, uniqueHeading(std::move(heading), taken));
    }
    line += "\r\n";

    const std::size_t rows = sheet.rowCount();
    for (std::size_t row = 0; row < rows; ++row) {
        if (headed) appendField(line, sheet.rowHeading(row));
        for (std::size_t column = 0; column < sheet.columns.size(); ++column) {
            if (headed || column > 0) line += ',';
            const Spreadsheet::Cell cell = sheet.cell(row, column);
            switch (cell.kind) {
            case Spreadsheet::Cell::Kind::Number:
                appendNumber(line, cell.number);
                break;
            case Spreadsheet::Cell::Kind::Integer:
                appendNumber(line, cell.integer);
                break;
            case Spreadsheet::Cell::Kind::Text:
                appendField(line, cell.text);
                break;
            case Spreadsheet::Cell::Kind::Empty:
                break;
            }
        }
        line += "\r\n";
        pieces.passOn();
    }
    pieces.flush();
}

} // namespace korvana
