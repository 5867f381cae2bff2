#include "apps/desktop/results/SheetCopy.h"

#include <string>

#include "apps/desktop/SelectedCells.h"
#include "host/results/FormatNumber.h"
#include "host/results/Utf8.h"

namespace korvana::desktop {
namespace {

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
        : sheet_(sheet), cells_(selection), options_(options),
          rowHeadings_(options.headings && !sheet.rowHeadings.empty()),
          html_(static_cast<std::size_t>(cells_.cellCount()) <= mostHtmlCells) {}

    [[nodiscard]] bool isEmpty() const { return cells_.isEmpty(); }

    std::unique_ptr<QMimeData> copied() {
        if (options_.headings) addHeadings();
        for (const auto& [first, last] : cells_.rows())
            for (int row = first; row <= last; ++row)
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
        for (const int column : cells_.columns())
            addCell(oneLine(sheet_.columns[static_cast<std::size_t>(column)].heading()), "th", false);
        endLine();
    }

    void addRow(int row) {
        const auto r = static_cast<std::size_t>(row);
        beginLine();
        if (rowHeadings_) addCell(oneLine(sheet_.rowHeading(r)), "th", false);
        for (const int column : cells_.columns()) {
            const auto c = static_cast<std::size_t>(column);
            addCell(cells_.contains(row, column) ? cellText(sheet_, r, c, options_.values) : std::string(),
                    "td", !sheet_.columns[c].isText());
        }
        endLine();
    }

    const Spreadsheet& sheet_;
    SelectedCells cells_;
    CopyOptions options_;
    bool rowHeadings_;
    bool html_;
    bool first_ = true;
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
