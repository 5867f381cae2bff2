#include "host/results/Spreadsheet.h"

#include "host/results/FormatNumber.h"
#include "support/Overloaded.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <type_traits>

namespace korvana {
namespace {

using Cells = decltype(Spreadsheet::Column::cells);

Cells copyCells(const decltype(ozm::SheetColumn::cells)& from) {
    return std::visit(ozm::Overloaded{[](const ozm::DictionaryCells& cells) -> Cells {
                                          return Spreadsheet::Dictionary{
                                              {cells.index.begin(), cells.index.end()},
                                              {cells.texts.begin(), cells.texts.end()}};
                                      },
                                      [](const auto& cells) -> Cells {
                                          using Value = typename std::decay_t<decltype(cells)>::value_type;
                                          return std::vector<Value>(cells.begin(), cells.end());
                                      }},
                      from);
}

} // namespace

std::size_t Spreadsheet::Column::size() const {
    return std::visit(ozm::Overloaded{[](const Dictionary& held) { return held.index.size(); },
                                      [](const auto& held) { return held.size(); }},
                      cells);
}

std::string Spreadsheet::Column::heading() const {
    std::string joined;
    for (const std::string_view line : {std::string_view{heading1}, std::string_view{heading2}}) {
        const auto first = line.find_first_not_of(' ');
        if (first == std::string_view::npos) continue;
        if (!joined.empty()) joined += ' ';
        joined += line.substr(first, line.find_last_not_of(' ') - first + 1);
    }
    return joined;
}

std::string Spreadsheet::Column::readableHeading() const {
    std::string plain;
    for (const char c : title.empty() ? heading() : title)
        if (c != ' ' || (!plain.empty() && plain.back() != ' ')) plain += c;
    return plain;
}

Spreadsheet Spreadsheet::fromSpec(const ozm::SheetSpec& spec) {
    Spreadsheet sheet;
    sheet.title = spec.title;
    sheet.notes = spec.notes;
    sheet.footnotes = spec.footnotes;
    sheet.repeatsReport = spec.repeatsReport;
    sheet.essential = spec.essential;
    sheet.rowHeadings = spec.rowHeadings;
    sheet.columns.reserve(spec.columns.size());
    for (const ozm::SheetColumn& column : spec.columns) {
        sheet.columns.push_back({column.heading1, column.heading2, column.format, copyCells(column.cells),
                                 column.id, column.title});
        if (column.copied) column.copied();
    }
    return sheet;
}

std::size_t Spreadsheet::rowCount() const {
    std::size_t rows = rowHeadings.size();
    for (const Column& column : columns)
        rows = std::max(rows, column.size());
    return rows;
}

Spreadsheet::Cell Spreadsheet::cell(std::size_t row, std::size_t column) const {
    if (column >= columns.size()) return {};
    return std::visit(ozm::Overloaded{[row](const std::vector<double>& cells) -> Cell {
                                          if (row >= cells.size() || std::isnan(cells[row])) return {};
                                          return {Cell::Kind::Number, 0, cells[row], {}};
                                      },
                                      [row](const std::vector<std::int32_t>& cells) -> Cell {
                                          if (row >= cells.size()) return {};
                                          return {Cell::Kind::Integer, cells[row], 0.0, {}};
                                      },
                                      [row](const Dictionary& cells) -> Cell {
                                          if (row >= cells.index.size()) return {};
                                          const std::size_t text = cells.index[row];
                                          if (text >= cells.texts.size()) return {};
                                          return {Cell::Kind::Text, 0, 0.0, cells.texts[text]};
                                      },
                                      [row](const std::vector<std::string>& cells) -> Cell {
                                          if (row >= cells.size()) return {};
                                          return {Cell::Kind::Text, 0, 0.0, cells[row]};
                                      }},
                      columns[column].cells);
}

std::string_view Spreadsheet::rowHeading(std::size_t row) const {
    return row < rowHeadings.size() ? std::string_view(rowHeadings[row]) : std::string_view();
}

void Spreadsheet::appendCellText(std::string& out, std::size_t row, std::size_t column,
                                 std::string_view empty) const {
    const Cell one = cell(row, column);
    switch (one.kind) {
    case Cell::Kind::Number:
        appendNumber(out, one.number, columns[column].format);
        break;
    case Cell::Kind::Integer:
        appendNumber(out, one.integer);
        break;
    case Cell::Kind::Text:
        out += one.text;
        break;
    case Cell::Kind::Empty:
        out += empty;
        break;
    }
}

std::string Spreadsheet::cellText(std::size_t row, std::size_t column, std::string_view empty) const {
    std::string text;
    appendCellText(text, row, column, empty);
    return text;
}

} // namespace korvana
