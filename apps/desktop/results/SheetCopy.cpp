#include "apps/desktop/results/SheetCopy.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "host/results/FormatNumber.h"
#include "host/results/Utf8.h"

namespace korvana::desktop {
namespace {

using Stretch = std::pair<std::size_t, std::size_t>; // first and last

/// Overlapping and neighbouring stretches joined, ascending.
std::vector<Stretch> joined(std::vector<Stretch> stretches) {
    std::sort(stretches.begin(), stretches.end());
    std::vector<Stretch> result;
    for (const Stretch& one : stretches) {
        if (!result.empty() && one.first <= result.back().second + 1) {
            result.back().second = std::max(result.back().second, one.second);
        } else {
            result.push_back(one);
        }
    }
    return result;
}

std::vector<std::size_t> members(const std::vector<Stretch>& stretches) {
    std::vector<std::size_t> all;
    for (const auto& [first, last] : stretches)
        for (std::size_t i = first; i <= last; ++i)
            all.push_back(i);
    return all;
}

std::string cellText(const Spreadsheet& sheet, std::size_t row, std::size_t column, CopyValues values) {
    if (values == CopyValues::AsShown) return oneLine(sheet.cellText(row, column, ""));
    const Spreadsheet::Cell cell = sheet.cell(row, column);
    switch (cell.kind) {
    case Spreadsheet::Cell::Kind::Number:
        return formatNumber(cell.number);
    case Spreadsheet::Cell::Kind::Integer:
        return std::to_string(cell.integer);
    case Spreadsheet::Cell::Kind::Text:
        return oneLine(cell.text);
    case Spreadsheet::Cell::Kind::Empty:
        break;
    }
    return {};
}

class Copier {
public:
    Copier(const Spreadsheet& sheet, const QItemSelection& selection, const CopyOptions& options)
        : sheet_(sheet), selection_(selection), options_(options),
          rowHeadings_(options.headings && !sheet.rowHeadings.empty()) {
        std::vector<Stretch> rows;
        std::vector<Stretch> columns;
        for (const QItemSelectionRange& range : selection) {
            if (!range.isValid()) continue;
            rows.emplace_back(range.top(), range.bottom());
            columns.emplace_back(range.left(), range.right());
        }
        rows_ = joined(std::move(rows));
        columns_ = members(joined(std::move(columns)));
        std::size_t count = 0;
        for (const auto& [first, last] : rows_)
            count += last - first + 1;
        html_ = count * columns_.size() <= kMostHtmlCells;
    }

    [[nodiscard]] bool isEmpty() const { return rows_.empty() || columns_.empty(); }

    std::unique_ptr<QMimeData> copied() {
        if (options_.headings) addHeadings();
        for (const auto& [first, last] : rows_)
            for (std::size_t row = first; row <= last; ++row)
                addRow(row);
        auto data = std::make_unique<QMimeData>();
        data->setText(QString::fromStdString(text_));
        if (html_) {
            data->setHtml(QStringLiteral("<meta charset=\"utf-8\"><table>") + QString::fromStdString(table_) +
                          QStringLiteral("</table>"));
        }
        return data;
    }

private:
    void addCell(const std::string& text, const char* tag, bool number) {
        if (!first_) text_ += '\t';
        first_ = false;
        text_ += text;
        if (!html_) return;
        table_.append("<").append(tag).append(number ? " align=\"right\">" : ">");
        appendEscaped(table_, text);
        table_.append("</").append(tag).append(">");
    }

    void beginLine() {
        first_ = true;
        if (html_) table_ += "<tr>";
    }

    void endLine() {
        text_ += '\n';
        if (html_) table_ += "</tr>";
    }

    void addHeadings() {
        beginLine();
        if (rowHeadings_) addCell({}, "th", false);
        for (const std::size_t column : columns_)
            addCell(oneLine(sheet_.columns[column].heading()), "th", false);
        endLine();
    }

    void addRow(std::size_t row) {
        beginLine();
        if (rowHeadings_) addCell(oneLine(sheet_.rowHeading(row)), "th", false);
        const bool whole = selection_.size() == 1; // a single block: no cell in it is left out
        for (const std::size_t column : columns_) {
            const bool selected = whole || isSelected(row, column);
            addCell(selected ? cellText(sheet_, row, column, options_.values) : std::string(), "td",
                    !sheet_.columns[column].isText());
        }
        endLine();
    }

    [[nodiscard]] bool isSelected(std::size_t row, std::size_t column) const {
        const auto r = static_cast<int>(row);
        const auto c = static_cast<int>(column);
        return std::any_of(selection_.begin(), selection_.end(), [r, c](const QItemSelectionRange& range) {
            return r >= range.top() && r <= range.bottom() && c >= range.left() && c <= range.right();
        });
    }

    const Spreadsheet& sheet_;
    const QItemSelection& selection_;
    CopyOptions options_;
    bool rowHeadings_;
    bool html_ = true;
    bool first_ = true;
    std::vector<Stretch> rows_;
    std::vector<std::size_t> columns_;
    std::string text_;
    std::string table_;
};

} // namespace

std::unique_ptr<QMimeData> copiedCells(const Spreadsheet& sheet, const QItemSelection& selection,
                                       const CopyOptions& options) {
    Copier copier(sheet, selection, options);
    if (copier.isEmpty()) return nullptr;
    return copier.copied();
}

} // namespace korvana::desktop
