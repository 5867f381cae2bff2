#include "host/session/RoutedSheet.h"

#include "support/CodeComparison.h"
#include "support/Overloaded.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <string_view>

namespace korvana {
namespace {

constexpr std::string_view rowHeading = "Row";

bool isNamed(const Spreadsheet::Column& column, std::string_view name) {
    return (!column.id.empty() && column.id == name) || column.heading() == name ||
           column.readableHeading() == name;
}

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    return first == std::string_view::npos ? std::string_view{}
                                           : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

bool isCode(const Spreadsheet::Cell& cell, const ozm::AutomationValue& code) {
    using Kind = Spreadsheet::Cell::Kind;
    if (const auto* text = std::get_if<std::string>(&code.value))
        return cell.kind == Kind::Text && trimmed(cell.text) == trimmed(*text);
    if (cell.kind != Kind::Number && cell.kind != Kind::Integer) return false;
    const double number = cell.kind == Kind::Number ? cell.number : cell.integer;
    const auto* whole = std::get_if<int>(&code.value);
    const auto* real = std::get_if<double>(&code.value);
    return (whole != nullptr && ozm::CodesEqual(number, *whole)) ||
           (real != nullptr && ozm::CodesEqual(number, *real));
}

/// The rows to be taken, from 0; nothing: all of them.
std::optional<std::vector<std::size_t>> rowsOf(const Spreadsheet& sheet, const SheetPart& part) {
    std::vector<std::size_t> columns;
    for (std::size_t place = 0; place < sheet.columns.size(); ++place)
        if (std::ranges::any_of(part.variables,
                                [&](const std::string& name) { return isNamed(sheet.columns[place], name); }))
            columns.push_back(place);
    const bool byHeading =
        !sheet.rowHeadings.empty() && std::ranges::find(part.variables, rowHeading) != part.variables.end();
    if (part.codes.empty() || (columns.empty() && !byHeading)) return std::nullopt;

    std::vector<std::size_t> rows;
    for (std::size_t row = 0; row < sheet.rowCount(); ++row) {
        const Spreadsheet::Cell heading{.kind = Spreadsheet::Cell::Kind::Text, .text = sheet.rowHeading(row)};
        const auto takes = [&](const ozm::AutomationValue& code) {
            return (byHeading && isCode(heading, code)) ||
                   std::ranges::any_of(
                       columns, [&](std::size_t column) { return isCode(sheet.cell(row, column), code); });
        };
        if (std::ranges::any_of(part.codes, takes)) rows.push_back(row);
    }
    return rows;
}

template <class T>
void take(std::vector<T>& cells, const std::vector<std::size_t>& rows) {
    std::vector<T> taken;
    taken.reserve(rows.size());
    for (const std::size_t row : rows)
        taken.push_back(row < cells.size() ? std::move(cells[row]) : T{});
    cells = std::move(taken);
}

void takeRows(Spreadsheet& sheet, const std::vector<std::size_t>& rows) {
    for (Spreadsheet::Column& column : sheet.columns)
        std::visit(ozm::Overloaded{[&](Spreadsheet::Dictionary& held) { take(held.index, rows); },
                                   [&](auto& cells) { take(cells, rows); }},
                   column.cells);
    if (!sheet.rowHeadings.empty()) take(sheet.rowHeadings, rows);
}

/// A number that has no text of digits alone stays as it is.
void roundNumbers(Spreadsheet& sheet) {
    for (std::size_t column = 0; column < sheet.columns.size(); ++column) {
        auto* cells = std::get_if<std::vector<double>>(&sheet.columns[column].cells);
        if (cells == nullptr) continue;
        for (std::size_t row = 0; row < cells->size(); ++row) {
            const std::string shown = sheet.cellText(row, column);
            const std::string_view text = trimmed(shown);
            double number = 0.0;
            const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
            if (read.ec == std::errc{} && read.ptr == text.data() + text.size()) (*cells)[row] = number;
        }
    }
}

} // namespace

std::optional<Spreadsheet> partOf(const Spreadsheet& sheet, const SheetPart& part) {
    Spreadsheet taken = sheet;
    if (const auto rows = rowsOf(sheet, part)) takeRows(taken, *rows);
    if (!part.fields.empty()) {
        std::vector<Spreadsheet::Column> columns;
        for (const std::string& name : part.fields)
            for (const Spreadsheet::Column& column : taken.columns)
                if (isNamed(column, name)) columns.push_back(column);
        if (columns.empty()) return std::nullopt;
        taken.columns = std::move(columns);
    }
    if (part.rounded) roundNumbers(taken);
    return taken;
}

} // namespace korvana
