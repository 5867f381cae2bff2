#include "host/results/XlsxWriter.h"

#include <algorithm>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <system_error>
#include <xlsxwriter.h>

#include "host/results/FormatNumber.h"
#include "host/results/OutputFile.h"
#include "host/results/SheetNames.h"
#include "host/results/TextWriter.h"
#include "host/results/Utf8.h"

namespace korvana {
namespace {

// The limits of the file format.
constexpr std::size_t kMostRows = 1048576;
constexpr std::size_t kMostColumns = 16384;
constexpr std::size_t kMostCharacters = 32767;

/// libxlsxwriter prints numbers with printf; a decimal comma would spoil the file.
class PlainNumbers {
public:
    PlainNumbers() : plain_(::newlocale(LC_NUMERIC_MASK, "C", nullptr)), before_(::uselocale(plain_)) {}
    ~PlainNumbers() {
        ::uselocale(before_);
        if (plain_ != nullptr) ::freelocale(plain_);
    }
    PlainNumbers(const PlainNumbers&) = delete;
    PlainNumbers& operator=(const PlainNumbers&) = delete;

private:
    locale_t plain_;
    locale_t before_;
};

class Workbook {
public:
    explicit Workbook(const std::filesystem::path& target, bool large)
        : target_(target), pending_(target), directory_(pending_.path().parent_path().string()) {
        if (directory_.empty()) directory_ = ".";
        // Rows wait beside the file, where there is as much room as for the file itself.
        lxw_workbook_options options{};
        options.constant_memory = LXW_TRUE;
        options.tmpdir = directory_.data();
        options.use_zip64 = large ? LXW_TRUE : LXW_FALSE;
        book_.reset(workbook_new_opt(pending_.path().c_str(), &options));
        if (!book_) fail(LXW_ERROR_MEMORY_MALLOC_FAILED);
        bold_ = format([](lxw_format* one) { format_set_bold(one); });
        text_ = format([](lxw_format* one) { format_set_font_name(one, "Courier New"); });
        heading_ = format([](lxw_format* one) {
            format_set_bold(one);
            format_set_align(one, LXW_ALIGN_RIGHT);
        });
        lastHeading_ = format([](lxw_format* one) {
            format_set_bold(one);
            format_set_align(one, LXW_ALIGN_RIGHT);
            format_set_bottom(one, LXW_BORDER_THIN);
        });
    }

    void addReport(const ResultsBook& book) {
        beginSheet("Report");
        worksheet_set_column(sheet_, 0, 0, 110, nullptr);
        line(book.analysis, bold_);
        if (!book.source.empty()) line("Data: " + book.source);
        for (const std::string& note : book.notes)
            line(note);
        for (const ResultMessage& message : book.messages) {
            line(messageText(message));
            if (!message.detail.empty()) line("  " + message.detail);
        }
        for (const ResultsBook::Output& output : book.outputs) {
            if (const auto* report = std::get_if<Report>(&output)) lines(report->title, report->lines);
            if (const auto* chart = std::get_if<Chart>(&output)) lines({}, {chartLine(chart->info)});
        }
        if (!book.iterations.empty()) lines("Iterations", book.iterations);
        endSheet();
    }

    void addTable(const Spreadsheet& sheet) {
        const std::size_t rows = sheet.rowCount();
        std::size_t begin = 0;
        do {
            beginSheet(sheet.title.empty() ? "Table" : sheet.title);
            writeHead(sheet, begin);
            const std::size_t end = std::min(rows, begin + (kMostRows - row_));
            for (; begin < end; ++begin, ++row_)
                writeRow(sheet, begin);
            endSheet();
        } while (begin < rows);
    }

    void finish() {
        // The library does not look whether its waiting rows reached the disk, so ask before they are packed.
        std::error_code unknown;
        const auto space = std::filesystem::space(directory_, unknown);
        if (!unknown && space.available < largest_) throwCannotWrite(target_, "no space left for the rows");
        check(workbook_close(book_.release()));
        pending_.commit();
    }

private:
    struct Free {
        void operator()(lxw_workbook* book) const { lxw_workbook_free(book); }
    };

    [[noreturn]] void fail(lxw_error error) const { throwCannotWrite(target_, lxw_strerror(error)); }
    void check(lxw_error error) const {
        if (error != LXW_NO_ERROR) fail(error);
    }

    template <class Set>
    lxw_format* format(Set set) {
        lxw_format* made = workbook_add_format(book_.get());
        if (made == nullptr) fail(LXW_ERROR_MEMORY_MALLOC_FAILED);
        set(made);
        return made;
    }

    lxw_format* numberFormat(ozm::CellFormat wanted) {
        using Kind = ozm::CellFormat::Kind;
        std::string picture;
        switch (wanted.kind) {
        case Kind::General:
            return nullptr;
        case Kind::Integer:
            picture = "0";
            break;
        case Kind::Fixed:
            picture = "0";
            if (wanted.digits > 0)
                picture += "." + std::string(std::min<std::size_t>(wanted.digits, 17), '0');
            break;
        case Kind::Probability:
            picture = R"([<1E-30]"< 1e-30";General)";
            break;
        }
        lxw_format*& known = numberFormats_[picture];
        if (known == nullptr)
            known = format([&picture](lxw_format* one) { format_set_num_format(one, picture.c_str()); });
        return known;
    }

    void beginSheet(std::string_view title) {
        sheet_ = workbook_add_worksheet(book_.get(), names_.take(title).c_str());
        if (sheet_ == nullptr) fail(LXW_ERROR_CREATING_TMPFILE);
        row_ = 0;
    }

    void endSheet() {
        FILE* rows = sheet_->optimize_tmpfile;
        if (rows == nullptr) return;
        if (std::fflush(rows) != 0 || std::ferror(rows) != 0)
            throwCannotWrite(target_, "no space left for the rows");
        largest_ = std::max(largest_, static_cast<std::uintmax_t>(std::max(0L, std::ftell(rows))));
    }

    void text(std::size_t column, std::string_view value, lxw_format* look = nullptr) {
        const std::string line = oneLine(value, kMostCharacters);
        if (line.empty()) return;
        check(worksheet_write_string(sheet_, static_cast<lxw_row_t>(row_), static_cast<lxw_col_t>(column),
                                     line.c_str(), look));
    }

    void line(std::string_view value, lxw_format* look = nullptr) {
        if (row_ >= kMostRows) return;
        text(0, value, look == nullptr ? text_ : look);
        ++row_;
    }

    void lines(std::string_view title, const std::vector<std::string>& list) {
        ++row_;
        if (!title.empty()) line(title, bold_);
        for (const std::string& one : list)
            line(one);
    }

    void writeHead(const Spreadsheet& sheet, std::size_t firstRow) {
        const std::size_t columns = columnsOf(sheet);
        const std::size_t shift = sheet.rowHeadings.empty() ? 0 : 1;
        for (std::size_t column = 0; column < columns; ++column)
            setWidth(column + shift, widthOf(sheet, column, firstRow));
        if (shift != 0) {
            std::size_t widest = 8;
            for (std::size_t row = firstRow; row < std::min(firstRow + kLookedAt, sheet.rowHeadings.size());
                 ++row)
                widest = std::max(widest, textWidth(sheet.rowHeadings[row]));
            setWidth(0, widest);
        }
        std::string title = sheet.title;
        if (firstRow > 0) title += " (from row " + std::to_string(firstRow + 1) + ")";
        if (columns < sheet.columns.size()) {
            title += " (the first " + std::to_string(columns) + " of " +
                     std::to_string(sheet.columns.size()) + " columns)";
        }
        line(title, bold_);
        for (std::size_t note = 0; note < std::min<std::size_t>(sheet.notes.size(), 1000); ++note)
            line(sheet.notes[note]);
        ++row_;
        for (std::size_t column = 0; column < columns; ++column)
            text(column + shift, sheet.columns[column].heading1, heading_);
        ++row_;
        for (std::size_t column = 0; column < columns; ++column) {
            text(column + shift,
                 sheet.columns[column].heading2.empty() ? " " : sheet.columns[column].heading2, lastHeading_);
        }
        ++row_;
        worksheet_freeze_panes(sheet_, static_cast<lxw_row_t>(row_), static_cast<lxw_col_t>(shift));
    }

    static constexpr std::size_t kLookedAt = 500; // rows looked at for a column's width

    static std::size_t widthOf(const Spreadsheet& sheet, std::size_t column, std::size_t firstRow) {
        const Spreadsheet::Column& one = sheet.columns[column];
        std::size_t widest = std::max({std::size_t{8}, textWidth(one.heading1), textWidth(one.heading2)});
        for (std::size_t row = firstRow; row < std::min(firstRow + kLookedAt, one.size()); ++row)
            widest = std::max(widest, textWidth(sheet.cellText(row, column)));
        return widest;
    }

    void setWidth(std::size_t column, std::size_t characters) {
        const auto place = static_cast<lxw_col_t>(column);
        worksheet_set_column(sheet_, place, place,
                             static_cast<double>(std::min<std::size_t>(characters, 60)) + 2.0, nullptr);
    }

    static std::size_t columnsOf(const Spreadsheet& sheet) {
        return std::min(sheet.columns.size(), kMostColumns - (sheet.rowHeadings.empty() ? 0U : 1U));
    }

    void writeRow(const Spreadsheet& sheet, std::size_t row) {
        const std::size_t shift = sheet.rowHeadings.empty() ? 0 : 1;
        const std::size_t columns = columnsOf(sheet);
        if (shift != 0) text(0, sheet.rowHeading(row));
        for (std::size_t column = 0; column < columns; ++column) {
            const Spreadsheet::Cell cell = sheet.cell(row, column);
            switch (cell.kind) {
            case Spreadsheet::Cell::Kind::Number:
                if (std::isfinite(cell.number)) {
                    number(column + shift, cell.number, numberFormat(sheet.columns[column].format));
                } else {
                    text(column + shift, formatNumber(cell.number));
                }
                break;
            case Spreadsheet::Cell::Kind::Integer:
                number(column + shift, cell.integer, nullptr);
                break;
            case Spreadsheet::Cell::Kind::Text:
                text(column + shift, cell.text);
                break;
            case Spreadsheet::Cell::Kind::Empty:
                break;
            }
        }
    }

    void number(std::size_t column, double value, lxw_format* look) {
        check(worksheet_write_number(sheet_, static_cast<lxw_row_t>(row_), static_cast<lxw_col_t>(column),
                                     value, look));
    }

    PlainNumbers plain_;
    std::filesystem::path target_;
    PendingFile pending_;
    std::string directory_;
    std::unique_ptr<lxw_workbook, Free> book_;
    lxw_worksheet* sheet_ = nullptr;
    std::size_t row_ = 0;
    std::uintmax_t largest_ = 0;
    SheetNames names_;
    std::map<std::string, lxw_format*> numberFormats_;
    lxw_format* bold_ = nullptr;
    lxw_format* text_ = nullptr;
    lxw_format* heading_ = nullptr;
    lxw_format* lastHeading_ = nullptr;
};

} // namespace

void writeXlsx(const ResultsBook& book, const std::filesystem::path& target) {
    std::size_t cells = 0;
    const auto sheets = book.all<Spreadsheet>();
    for (const Spreadsheet* sheet : sheets)
        cells += sheet->rowCount() * (sheet->columns.size() + 1);
    Workbook workbook(target,
                      cells > 20'000'000); // beyond this a sheet may outgrow the plain container's 4 GB
    workbook.addReport(book);
    for (const Spreadsheet* sheet : sheets)
        workbook.addTable(*sheet);
    workbook.finish();
}

} // namespace korvana
