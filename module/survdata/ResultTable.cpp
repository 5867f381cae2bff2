#include "module/survdata/ResultTable.h"

#include "module/resources/Resources.h"
#include "module/resources/Shared.h"
#include "support/Overloaded.h"

#include <algorithm>
#include <limits>

namespace ozm::survival {
namespace {

template <class T>
bool Allocate(CAnalysisSupport& host, HostArray<T>& cells, std::size_t rows, T empty) {
    if (!cells.Allocate(host, rows)) return false;
    std::fill(cells.Span().begin(), cells.Span().end(), empty);
    return true;
}

} // namespace

std::size_t ResultTable::Add(const ColumnName& name, CellFormat format, Column cells) {
    SheetColumn& column = sheet_.columns.emplace_back();
    column.heading1 = name.named.empty() ? std::string{Text(name.heading1)} : name.named;
    column.heading2 = Text(name.heading2);
    column.format = format;
    column.id = name.id;
    column.title = name.inFull;
    columns_.push_back(std::move(cells));
    return columns_.size() - 1;
}

ResultTable::Numbers ResultTable::AddNumbers(const ColumnName& name, CellFormat format) {
    return {Add(name, format, HostArray<double>{})};
}

ResultTable::Integers ResultTable::AddIntegers(const ColumnName& name) {
    return {Add(name, CellFormat::integer(), HostArray<std::int32_t>{})};
}

ResultTable::Marks ResultTable::AddMarks(const ColumnName& name, std::span<const std::string_view> texts) {
    return {Add(name, CellFormat::general(), MarkCells{{}, texts})};
}

ResultTable::Texts ResultTable::AddTexts(const ColumnName& name) {
    return {Add(name, CellFormat::general(), std::vector<std::string>{})};
}

bool ResultTable::AddRows(CAnalysisSupport& host, std::size_t rows) {
    rows_ = rows;
    const auto makeRoom = Overloaded{
        [&](HostArray<double>& cells) {
            return Allocate(host, cells, rows, std::numeric_limits<double>::quiet_NaN());
        },
        [&](HostArray<std::int32_t>& cells) { return Allocate(host, cells, rows, std::int32_t{0}); },
        [&](MarkCells& cells) { return Allocate(host, cells.index, rows, std::uint8_t{0}); },
        [&](std::vector<std::string>& cells) {
            cells.resize(rows);
            return true;
        }};
    return std::all_of(columns_.begin(), columns_.end(),
                       [&](Column& column) { return std::visit(makeRoom, column); });
}

OutputResult ResultTable::Write(CAnalysisSupport& host) {
    for (std::size_t k = 0; k < columns_.size(); ++k) {
        auto& cells = sheet_.columns[k].cells;
        std::visit(
            Overloaded{[&](HostArray<double>& c) { cells = std::span<const double>{c.Span()}; },
                       [&](HostArray<std::int32_t>& c) { cells = std::span<const std::int32_t>{c.Span()}; },
                       [&](MarkCells& c) {
                           cells = DictionaryCells{c.index.Span(), c.texts};
                       },
                       [&](std::vector<std::string>& c) { cells = std::span<const std::string>{c}; }},
            columns_[k]);
        sheet_.columns[k].copied = [&column = columns_[k]] { column = HostArray<double>{}; };
    }
    return host.looka4(sheet_) == 0 ? OutputResult{} : OutputResult::Failed(StrSpreadsheetFailed);
}

} // namespace ozm::survival
