#include "host/results/TextWriter.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "host/results/FormatNumber.h"
#include "host/results/TextPieces.h"
#include "host/results/Utf8.h"
#include "host/results/WritingWatch.h"

namespace korvana {
namespace {

constexpr std::string_view emptyMark = "--";
constexpr std::string_view gap = "  ";

/// Of the last line, whatever stands before it.
void endLine(std::string& text) {
    text.erase(text.find_last_not_of(' ') + 1);
    text += '\n';
}

void writeLine(std::string_view text, std::ostream& out) {
    std::string line = oneLine(text);
    endLine(line);
    out << line;
}

void writeTitle(std::string_view title, char underline, std::ostream& out) {
    const std::string line = shownLine(title);
    if (line.empty()) return;
    out << line << '\n' << std::string(textWidth(line), underline) << '\n';
}

struct TextColumn {
    std::string heading1;
    std::string heading2;
    std::size_t width = 0;
    bool left = false;
};

/// `own` is the width of the text.
void appendPadded(std::string& line, std::string_view text, std::size_t own, const TextColumn& column) {
    const std::size_t padding = own < column.width ? column.width - own : 0;
    if (!column.left) line.append(padding, ' ');
    line += text;
    if (column.left) line.append(padding, ' ');
}

void appendPadded(std::string& line, std::string_view text, const TextColumn& column) {
    appendPadded(line, text, textWidth(text), column);
}

/// The width of the text that is put into `out`.
std::size_t formatCell(std::string& out, const Spreadsheet& sheet, std::size_t row, std::size_t column) {
    out.clear();
    const Spreadsheet::Cell cell = sheet.cell(row, column);
    switch (cell.kind) {
    case Spreadsheet::Cell::Kind::Number:
        appendNumber(out, cell.number, sheet.columns[column].format);
        break;
    case Spreadsheet::Cell::Kind::Integer:
        appendNumber(out, cell.integer);
        break;
    case Spreadsheet::Cell::Kind::Text:
        appendOneLine(out, cell.text);
        return textWidth(out);
    case Spreadsheet::Cell::Kind::Empty:
        out += emptyMark;
        break;
    }
    return out.size();
}

/// With fixed decimals the longest number is one of the extremes, which saves formatting the column twice.
std::size_t numbersWidth(const std::vector<double>& cells, ozm::CellFormat format) {
    const bool byExtremes =
        format.kind == ozm::CellFormat::Kind::Fixed || format.kind == ozm::CellFormat::Kind::Integer;
    std::size_t width = 0;
    double low = 0.0;
    double high = 0.0;
    std::string text;
    const auto measure = [&](double value) {
        throwIfWritingStopped();
        text.clear();
        appendNumber(text, value, format);
        width = std::max(width, text.size());
    };
    for (const double value : cells) {
        if (std::isnan(value)) {
            width = std::max(width, emptyMark.size());
        } else if (byExtremes && std::fabs(value) < exponentFrom) {
            low = std::min(low, value);
            high = std::max(high, value);
        } else {
            measure(value);
        }
    }
    if (byExtremes && !cells.empty()) {
        measure(low);
        measure(high);
    }
    return width;
}

std::size_t cellsWidth(const Spreadsheet& sheet, std::size_t column, std::size_t rows) {
    const Spreadsheet::Column& one = sheet.columns[column];
    const std::size_t shorter = one.size() < rows ? emptyMark.size() : 0;
    if (const auto* numbers = std::get_if<std::vector<double>>(&one.cells))
        return std::max(shorter, numbersWidth(*numbers, one.format));
    std::size_t width = shorter;
    std::string text;
    for (std::size_t row = 0; row < one.size(); ++row) {
        throwIfWritingStopped();
        width = std::max(width, formatCell(text, sheet, row, column));
    }
    return width;
}

std::vector<TextColumn> layOut(const Spreadsheet& sheet, std::size_t rows) {
    std::vector<TextColumn> layout;
    if (!sheet.rowHeadings.empty()) {
        TextColumn headings{{}, {}, 0, true};
        for (const std::string& heading : sheet.rowHeadings)
            headings.width = std::max(headings.width, textWidth(oneLine(heading)));
        layout.push_back(headings);
    }
    for (std::size_t column = 0; column < sheet.columns.size(); ++column) {
        const Spreadsheet::Column& from = sheet.columns[column];
        TextColumn one{oneLine(from.heading1), oneLine(from.heading2), 0, from.isText()};
        one.width =
            std::max({cellsWidth(sheet, column, rows), textWidth(one.heading1), textWidth(one.heading2)});
        layout.push_back(std::move(one));
    }
    return layout;
}

void appendHeadings(std::string& line, const std::vector<TextColumn>& layout) {
    for (const auto heading : {&TextColumn::heading1, &TextColumn::heading2}) {
        const bool any = std::any_of(layout.begin(), layout.end(), [heading](const TextColumn& column) {
            return !(column.*heading).empty();
        });
        if (!any) continue;
        for (const TextColumn& column : layout) {
            if (&column != &layout.front()) line += gap;
            appendPadded(line, column.*heading, column);
        }
        endLine(line);
    }
    for (const TextColumn& column : layout) {
        if (&column != &layout.front()) line += gap;
        line.append(column.width, '-');
    }
    endLine(line);
}

void writeReport(const Report& report, std::ostream& out) {
    writeTitle(report.title, '-', out);
    for (const std::string& line : report.lines)
        writeLine(line, out);
}

} // namespace

std::string messageText(const ResultMessage& message) {
    std::string text = message.severity == ResultMessage::Severity::Error     ? "Error"
                       : message.severity == ResultMessage::Severity::Warning ? "Warning"
                                                                              : "Note";
    if (message.id != 0) text += " " + std::to_string(message.id);
    return text + ": " + shownLine(message.text);
}

std::string chartLine(const ozm::CChartInfo& info) {
    std::string line = "Chart: " + shownLine(info.title);
    const std::string x = shownLine(info.xAxis.title);
    const std::string y = shownLine(info.yAxis.title);
    if (!x.empty() || !y.empty()) line += " [x: " + x + "; y: " + y + "]";
    std::vector<std::string> names;
    for (const ozm::ChartSeries& series : info.series) {
        std::string name = shownLine(series.legend);
        if (!name.empty() && std::find(names.begin(), names.end(), name) == names.end())
            names.push_back(std::move(name));
    }
    constexpr std::size_t mostNames = 12;
    for (std::size_t i = 0; i < std::min(names.size(), mostNames); ++i)
        line += (i == 0 ? " - " : ", ") + names[i];
    if (names.size() > mostNames) line += " and " + std::to_string(names.size() - mostNames) + " more";
    return line;
}

void writeText(const Spreadsheet& sheet, std::ostream& out) {
    writeTitle(sheet.title, '-', out);
    for (const std::string& note : sheet.notes)
        writeLine(note, out);
    const std::size_t rows = sheet.rowCount();
    if (sheet.columns.empty() && rows == 0) return;
    if (!sheet.notes.empty()) out << '\n';
    const std::vector<TextColumn> layout = layOut(sheet, rows);
    TextPieces pieces(out);
    std::string& line = pieces.text();
    appendHeadings(line, layout);

    const std::size_t shift = sheet.rowHeadings.empty() ? 0 : 1;
    std::string cell;
    for (std::size_t row = 0; row < rows; ++row) {
        if (shift != 0) appendPadded(line, oneLine(sheet.rowHeading(row)), layout[0]);
        for (std::size_t column = 0; column < sheet.columns.size(); ++column) {
            if (column + shift > 0) line += gap;
            const std::size_t width = formatCell(cell, sheet, row, column);
            appendPadded(line, cell, width, layout[column + shift]);
        }
        endLine(line);
        pieces.passOn();
    }
    pieces.flush();
    if (!sheet.footnotes.empty()) out << '\n';
    for (const std::string& note : sheet.footnotes)
        writeLine(note, out);
}

void writeText(const ResultsBook& book, std::ostream& out, const TextOptions& options) {
    writeTitle(book.analysis, '=', out);
    if (!book.source.empty()) writeLine("Data: " + book.source, out);
    for (const std::string& note : book.notes)
        writeLine(note, out);
    if (options.messages && !book.messages.empty()) {
        out << '\n';
        for (const ResultMessage& message : book.messages) {
            writeLine(messageText(message), out);
            if (!message.detail.empty()) writeLine("  " + message.detail, out);
        }
    }
    for (const ResultsBook::Output& output : book.outputs) {
        if (ResultsBook::repeatsReport(output)) continue;
        out << '\n';
        if (const auto* report = std::get_if<Report>(&output)) writeReport(*report, out);
        if (const auto* sheet = std::get_if<Spreadsheet>(&output)) writeText(*sheet, out);
        if (const auto* chart = std::get_if<Chart>(&output)) {
            writeLine(chartLine(chart->info), out);
            for (const std::string& note : chart->info.notes)
                writeLine("  " + oneLine(note), out);
        }
    }
    if (options.iterations && !book.iterations.empty()) {
        out << '\n';
        writeReport({"Iterations", book.iterations}, out);
    }
}

} // namespace korvana
