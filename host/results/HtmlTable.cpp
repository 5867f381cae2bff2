#include "host/results/HtmlTable.h"

#include <algorithm>

#include "host/results/TextPieces.h"
#include "host/results/Utf8.h"

namespace korvana {
namespace {

void writeHeadings(const Spreadsheet& sheet, std::ostream& out, std::string_view textCells) {
    out << "<thead><tr>";
    if (!sheet.rowHeadings.empty()) out << "<td></td>";
    for (const Spreadsheet::Column& column : sheet.columns) {
        out << R"(<th scope="col")" << (column.isText() ? textCells : "") << '>'
            << escaped(oneLine(column.heading1));
        if (!column.heading1.empty() && !column.heading2.empty()) out << "<br/>";
        out << escaped(oneLine(column.heading2)) << "</th>";
    }
    out << "</tr></thead>\n";
}

void writeRows(const Spreadsheet& sheet, std::size_t rows, std::ostream& out, std::string_view textCells) {
    TextPieces pieces(out);
    std::string& line = pieces.text();
    std::string cell;
    for (std::size_t row = 0; row < rows; ++row) {
        line += "<tr>";
        if (!sheet.rowHeadings.empty()) {
            line += "<th scope=\"row\">";
            appendEscaped(line, sheet.rowHeading(row));
            line += "</th>";
        }
        for (std::size_t column = 0; column < sheet.columns.size(); ++column) {
            line += "<td";
            if (sheet.columns[column].isText()) line += textCells;
            line += '>';
            cell.clear();
            sheet.appendCellText(cell, row, column);
            appendEscaped(line, cell);
            line += "</td>";
        }
        line += "</tr>\n";
        pieces.passOn();
    }
    pieces.flush();
}

void writeLine(std::string_view text, std::ostream& out) {
    out << "<div>" << escaped(shownLine(text)) << "</div>\n";
}

} // namespace

std::string groupedDigits(std::size_t number) {
    std::string text = std::to_string(number);
    for (auto place = static_cast<std::ptrdiff_t>(text.size()) - 3; place > 0; place -= 3)
        text.insert(static_cast<std::size_t>(place), ",");
    return text;
}

void writeHtmlTable(const Spreadsheet& sheet, std::ostream& out, const HtmlTableOptions& options) {
    out << R"(<table aria-label=")" << escaped(shownLine(sheet.title)) << "\">\n";
    if (!sheet.columns.empty()) writeHeadings(sheet, out, options.textCells);
    out << "<tbody>\n";
    const std::size_t rows = sheet.rowCount();
    if (rows == 0) out << "<tr><td" << options.textCells << ">no rows</td></tr>\n";
    writeRows(sheet, std::min(rows, options.mostRows), out, options.textCells);
    out << "</tbody>\n</table>";
}

void writeHtmlFragment(const Spreadsheet& sheet, std::ostream& out, std::size_t mostRows,
                       std::string_view rest) {
    out << "<div>\n<div><b>" << escaped(shownLine(sheet.title)) << "</b></div>\n";
    for (const std::string& note : sheet.notes)
        writeLine(note, out);
    writeHtmlTable(sheet, out, {.mostRows = mostRows, .textCells = R"( style="text-align:left")"});
    out << '\n';
    if (const std::size_t rows = sheet.rowCount(); rows > mostRows)
        writeLine("The first " + groupedDigits(mostRows) + " of " + groupedDigits(rows) + " rows; " +
                      std::string(rest),
                  out);
    for (const std::string& note : sheet.footnotes)
        writeLine(note, out);
    out << "</div>\n";
}

} // namespace korvana
