#include "host/results/HtmlTable.h"

#include <algorithm>

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

void writeRow(const Spreadsheet& sheet, std::size_t row, std::ostream& out, std::string_view textCells) {
    out << "<tr>";
    if (!sheet.rowHeadings.empty()) out << "<th scope=\"row\">" << escaped(sheet.rowHeading(row)) << "</th>";
    for (std::size_t column = 0; column < sheet.columns.size(); ++column) {
        out << "<td" << (sheet.columns[column].isText() ? textCells : "") << '>'
            << escaped(sheet.cellText(row, column)) << "</td>";
    }
    out << "</tr>\n";
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
    for (std::size_t row = 0; row < std::min(rows, options.mostRows); ++row)
        writeRow(sheet, row, out, options.textCells);
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
