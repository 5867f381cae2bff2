#include "host/session/SessionSheets.h"

#include <algorithm>
#include <new>
#include <variant>

namespace korvana {
namespace {

std::size_t cellCount(const ozm::SheetColumn& column) {
    struct {
        std::size_t operator()(const ozm::DictionaryCells& cells) const { return cells.index.size(); }
        std::size_t operator()(std::span<const double> cells) const { return cells.size(); }
        std::size_t operator()(std::span<const std::int32_t> cells) const { return cells.size(); }
        std::size_t operator()(std::span<const std::string> cells) const { return cells.size(); }
    } size;
    return std::visit(size, column.cells);
}

bool isRectangular(const ozm::SheetSpec& sheet) {
    if (sheet.columns.empty()) return false;
    const std::size_t rows = cellCount(sheet.columns.front());
    return (sheet.rowHeadings.empty() || sheet.rowHeadings.size() == rows) &&
           std::all_of(sheet.columns.begin(), sheet.columns.end(),
                       [rows](const ozm::SheetColumn& column) { return cellCount(column) == rows; });
}

} // namespace

short SessionSheets::table4(const ozm::SheetSpec& sheet) try {
    if (!isRectangular(sheet)) return 1;
    Spreadsheet copy = Spreadsheet::fromSpec(sheet);
    for (Spreadsheet::Column& column : copy.columns)
        column.format = ozm::CellFormat::general();
    parts_.addOutput(std::move(copy));
    return 0;
} catch (const std::bad_alloc&) {
    return 1;
}

short SessionSheets::looka4(const ozm::SheetSpec& sheet) try {
    if (!isRectangular(sheet)) return 1;
    parts_.addOutput(Spreadsheet::fromSpec(sheet));
    return 0;
} catch (const std::bad_alloc&) {
    return 1;
}

short SessionSheets::RenameColumn(int column, std::string_view heading1, std::string_view heading2) {
    auto& outputs = parts_.book->outputs;
    const auto last = std::find_if(outputs.rbegin(), outputs.rend(), [](const ResultsBook::Output& output) {
        return std::holds_alternative<Spreadsheet>(output);
    });
    if (last == outputs.rend() || column < 0) return 1;
    auto& columns = std::get<Spreadsheet>(*last).columns;
    const auto place = static_cast<std::size_t>(column);
    if (place >= columns.size()) return 1;
    columns[place].heading1 = heading1;
    columns[place].heading2 = heading2;
    columns[place].title.clear();
    parts_.observers.outputChanged(*last);
    return 0;
}

} // namespace korvana
