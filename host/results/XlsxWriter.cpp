#include "host/results/XlsxWriter.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <stdexcept>
#include <string>

#include "host/results/FormatNumber.h"
#include "host/results/OutputFile.h"
#include "host/results/TextWriter.h"
#include "host/results/Utf8.h"
#include "host/results/WorkApart.h"
#include "host/results/WritingWatch.h"
#include "host/results/XlsxBook.h"
#include "host/results/XlsxLayout.h"
#include "host/results/XlsxText.h"

namespace korvana {
namespace {

constexpr Work writing{"writing it", noMemoryForWorkbook, std::nullopt};

bool isAnyCut(const std::vector<std::string>& texts) {
    return std::any_of(texts.begin(), texts.end(), [](const std::string& text) { return isCutInXlsx(text); });
}

bool cutsTextOf(const Spreadsheet& sheet) {
    if (isCutInXlsx(sheet.title) || isAnyCut(sheet.notes) || isAnyCut(sheet.footnotes) ||
        isAnyCut(sheet.rowHeadings))
        return true;
    return std::any_of(sheet.columns.begin(), sheet.columns.end(), [](const Spreadsheet::Column& column) {
        const auto* dictionary = std::get_if<Spreadsheet::Dictionary>(&column.cells);
        const auto* texts =
            dictionary != nullptr ? &dictionary->texts : std::get_if<std::vector<std::string>>(&column.cells);
        return isCutInXlsx(column.readableHeading()) || (texts != nullptr && isAnyCut(*texts));
    });
}

/// Whether cells do not hold all texts.
bool cutsTextOf(const ResultsBook& book) {
    const auto inOutput = [](const ResultsBook::Output& output) {
        if (const auto* report = std::get_if<Report>(&output)) return isAnyCut(report->lines);
        if (const auto* sheet = std::get_if<Spreadsheet>(&output)) return cutsTextOf(*sheet);
        const ozm::CChartInfo& info = std::get<Chart>(output).info;
        return isAnyCut(info.notes) || isCutInXlsx(chartLine(info));
    };
    const auto inMessage = [](const ResultMessage& message) {
        return isCutInXlsx(messageText(message)) || isCutInXlsx(message.detail);
    };
    return isAnyCut(book.notes) || isAnyCut(book.iterations) || isCutInXlsx(book.source) ||
           std::any_of(book.messages.begin(), book.messages.end(), inMessage) ||
           std::any_of(book.outputs.begin(), book.outputs.end(), inOutput);
}

/// The report of the outputs, and a sheet or more of each table.
class Workbook {
public:
    Workbook(const PendingFile& pending, bool large) : book_(pending, large) {}

    void addReport(const ResultsBook& book) {
        book_.beginSheet("Report");
        book_.setWidth(0, 108);
        book_.line(book.analysis, book_.bold());
        if (!book.source.empty()) line("Data: " + book.source);
        for (const std::string& note : book.notes)
            line(note);
        if (cutsTextOf(book)) {
            line("Texts of more than 32,767 characters, the most that a cell can hold, are cut and end with "
                 "\u2026. The other formats have them in full.");
        }
        for (const ResultMessage& message : book.messages) {
            line(messageText(message));
            if (!message.detail.empty()) line("  " + message.detail);
        }
        for (const ResultsBook::Output& output : book.outputs) {
            if (const auto* report = std::get_if<Report>(&output)) lines(report->title, report->lines);
            if (const auto* chart = std::get_if<Chart>(&output)) {
                lines({}, {chartLine(chart->info)});
                for (const std::string& note : chart->info.notes)
                    line("  " + note);
            }
        }
        if (!book.iterations.empty()) lines("Iterations", book.iterations);
        book_.endSheet();
    }

    void addTable(const Spreadsheet& sheet) {
        const std::size_t rows = sheet.rowCount();
        const std::size_t footnotes = std::min<std::size_t>(sheet.footnotes.size(), 1000);
        const std::size_t below = footnotes == 0 ? 0 : footnotes + 1; // rows
        std::size_t begin = 0;
        do {
            book_.beginSheet(sheet.title.empty() ? "Table" : sheet.title);
            writeHead(sheet, begin);
            const std::size_t end = std::min(rows, begin + (mostSheetRows - book_.row() - below));
            for (; begin < end; ++begin, book_.nextRow()) {
                throwIfWritingStopped();
                writeRow(sheet, begin);
            }
            if (begin == rows && footnotes > 0) {
                book_.nextRow();
                for (std::size_t note = 0; note < footnotes; ++note)
                    book_.line(sheet.footnotes[note], book_.note());
            }
            book_.endSheet(columnsOf(sheet) + 1);
        } while (begin < rows);
    }

    void finish() { book_.finish(); }

private:
    void line(std::string_view value) { book_.line(value, book_.report()); }

    void lines(std::string_view title, const std::vector<std::string>& list) {
        book_.nextRow();
        if (const std::string shown = shownLine(title); !shown.empty()) book_.line(shown, book_.bold());
        for (const std::string& one : list)
            line(one);
    }

    void writeHead(const Spreadsheet& sheet, std::size_t firstRow) {
        const std::size_t columns = columnsOf(sheet);
        const std::size_t shift = sheet.rowHeadings.empty() ? 0 : 1;
        for (std::size_t column = 0; column < columns; ++column)
            book_.setWidth(column + shift, columnWidth(sheet, column, firstRow));
        if (shift != 0) book_.setWidth(0, rowHeadingWidth(sheet, firstRow));
        std::string title = shownLine(sheet.title);
        if (firstRow > 0) title += " (from row " + std::to_string(firstRow + 1) + ")";
        if (columns < sheet.columns.size()) {
            title += " (the first " + std::to_string(columns) + " of " +
                     std::to_string(sheet.columns.size()) + " columns)";
        }
        book_.line(title, book_.bold());
        for (std::size_t note = 0; note < std::min<std::size_t>(sheet.notes.size(), 1000); ++note)
            book_.line(sheet.notes[note], book_.note());
        book_.nextRow();
        // Long headings are broken: the row is tall enough for the tallest.
        std::size_t lines = 1;
        for (std::size_t column = 0; column < columns; ++column) {
            lines = std::max(lines, brokenLines(sheet.columns[column].readableHeading(),
                                                columnWidth(sheet, column, firstRow)));
        }
        book_.setHeight(lines);
        if (shift != 0) book_.text(0, " ", book_.heading(true));
        for (std::size_t column = 0; column < columns; ++column) {
            const Spreadsheet::Column& one = sheet.columns[column];
            const std::string heading = one.readableHeading();
            book_.text(column + shift, heading.empty() ? " " : heading, book_.heading(one.isText()));
        }
        book_.nextRow();
        book_.freezeAbove(shift);
    }

    static std::size_t columnsOf(const Spreadsheet& sheet) {
        return std::min(sheet.columns.size(), mostSheetColumns - (sheet.rowHeadings.empty() ? 0U : 1U));
    }

    void writeRow(const Spreadsheet& sheet, std::size_t row) {
        const std::size_t shift = sheet.rowHeadings.empty() ? 0 : 1;
        const std::size_t columns = columnsOf(sheet);
        if (shift != 0) book_.text(0, sheet.rowHeading(row));
        for (std::size_t column = 0; column < columns; ++column) {
            const Spreadsheet::Cell cell = sheet.cell(row, column);
            switch (cell.kind) {
            case Spreadsheet::Cell::Kind::Number:
                if (std::isfinite(cell.number)) {
                    book_.number(column + shift, cell.number,
                                 book_.numberFormat(sheet.columns[column].format));
                } else {
                    book_.text(column + shift, formatNumber(cell.number));
                }
                break;
            case Spreadsheet::Cell::Kind::Integer:
                book_.number(column + shift, cell.integer);
                break;
            case Spreadsheet::Cell::Kind::Text:
                book_.text(column + shift, cell.text);
                break;
            case Spreadsheet::Cell::Kind::Empty:
                break;
            }
        }
    }

    XlsxBook book_;
};

void writeHere(const ResultsBook& book, const PendingFile& pending) {
    std::size_t cells = 0;
    const auto sheets = book.all<Spreadsheet>();
    for (const Spreadsheet* sheet : sheets)
        cells += sheet->rowCount() * (sheet->columns.size() + 1);
    Workbook workbook(pending,
                      cells > 20'000'000); // beyond this a sheet may outgrow the plain container's 4 GB
    workbook.addReport(book);
    for (const Spreadsheet* sheet : sheets)
        workbook.addTable(*sheet);
    workbook.finish();
}

} // namespace

void writeXlsx(const ResultsBook& book, const std::filesystem::path& target) {
    PendingFile pending(target);
    writeXlsx(book, pending);
    pending.commit();
}

void writeXlsx(const ResultsBook& book, const PendingFile& pending) {
    // A program with a watch has threads, and stops by exceptions.
    if (WritingWatch::current() != nullptr) return writeHere(book, pending);
    const std::optional<Answer> failure = workApart(writing, [&] {
        try {
            writeHere(book, pending);
            return Answer{};
        } catch (const std::runtime_error& error) { // the text already names the file
            return Answer{error.what(), {}};
        }
    });
    if (!failure) return writeHere(book, pending);
    if (!failure->error.empty()) throwCannotWrite(pending.target(), failure->error);
    if (!failure->bytes.empty()) throw std::runtime_error(failure->bytes);
}

} // namespace korvana
