#include "host/results/XlsxWriter.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <map>
#include <memory>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <sys/resource.h>
#include <system_error>
#include <xlsxwriter.h>

#include "host/results/FormatNumber.h"
#include "host/results/OutputFile.h"
#include "host/results/PlainNumbers.h"
#include "host/results/SheetNames.h"
#include "host/results/TextWriter.h"
#include "host/results/Utf8.h"
#include "host/results/WorkApart.h"
#include "host/results/WritingWatch.h"
#include "host/results/XlsxLayout.h"
#include "host/results/XlsxPacking.h"

namespace korvana {
namespace {

// The limits of the file format.
constexpr std::size_t kMostRows = 1048576;
constexpr std::size_t kMostColumns = 16384;
constexpr std::size_t kMostCharacters = 32767;
constexpr double kLineHeight = 15.0; // points
// Bytes of a sheet besides its rows, and one column's share of them.
constexpr std::uintmax_t kAroundRows = 2048;
constexpr std::uintmax_t kAroundColumn = 128;

constexpr Work kWriting{"writing it", "not enough memory", std::nullopt};

class Workbook {
public:
    explicit Workbook(const PendingFile& pending, bool large)
        : target_(pending.target()), directory_(pending.path().parent_path().string()),
          file_(pending.path(), target_) {
        if (directory_.empty()) directory_ = ".";
        // Rows wait beside the file, where there is as much room as for the file itself.
        lxw_workbook_options options{};
        options.constant_memory = LXW_TRUE;
        options.tmpdir = directory_.data();
        options.use_zip64 = large ? LXW_TRUE : LXW_FALSE;
        book_.reset(workbook_new_opt(file_.path().c_str(), &options));
        if (!book_) fail(LXW_ERROR_MEMORY_MALLOC_FAILED);
        bold_ = format([](lxw_format* one) { format_set_bold(one); });
        text_ = format([](lxw_format* one) { format_set_font_name(one, "Courier New"); });
        note_ = format([](lxw_format* one) { format_set_italic(one); });
        const auto heading = [this](lxw_format_alignments side) {
            return format([side](lxw_format* one) {
                format_set_bold(one);
                format_set_text_wrap(one);
                format_set_align(one, static_cast<std::uint8_t>(side));
                format_set_align(one, LXW_ALIGN_VERTICAL_BOTTOM);
                format_set_bottom(one, LXW_BORDER_THIN);
            });
        };
        heading_ = heading(LXW_ALIGN_RIGHT);
        textHeading_ = heading(LXW_ALIGN_LEFT);
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
            if (const auto* chart = std::get_if<Chart>(&output)) {
                lines({}, {chartLine(chart->info)});
                for (const std::string& note : chart->info.notes)
                    line("  " + note);
            }
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
            for (; begin < end; ++begin, ++row_) {
                throwIfWritingStopped();
                writeRow(sheet, begin);
            }
            endSheet(columnsOf(sheet) + 1);
        } while (begin < rows);
    }

    void finish() {
        // The library does not look whether its waiting rows reached the disk, so ask before they are packed.
        std::error_code unknown;
        const auto space = std::filesystem::space(directory_, unknown);
        if (!unknown && space.available < largest_) throwCannotWrite(target_, ENOSPC);
        rlimit limit{};
        if (::getrlimit(RLIMIT_FSIZE, &limit) == 0 && limit.rlim_cur < largest_ + kAroundRows)
            throwCannotWrite(target_, EFBIG);
        const auto [error, reason] = file_.pack(book_.release());
        if (error != LXW_NO_ERROR && (reason == EFBIG || reason == ENOSPC || reason == EDQUOT))
            throwCannotWrite(target_, reason);
        if (error != LXW_NO_ERROR) fail(error, reason);
    }

private:
    struct Free {
        /// The library itself closes the files of waiting rows only as it packs them.
        void operator()(lxw_workbook* book) const {
            lxw_worksheet* sheet = nullptr;
            STAILQ_FOREACH(sheet, book->worksheets, list_pointers)
            if (sheet->optimize_tmpfile != nullptr) std::fclose(sheet->optimize_tmpfile);
            lxw_workbook_free(book);
        }
    };

    /// The library's words, but for what others say more plainly.
    [[noreturn]] void fail(lxw_error error, int reason = 0) const {
        if (error == LXW_ERROR_MEMORY_MALLOC_FAILED || reason == ENOMEM)
            throwCannotWrite(target_, kWriting.noMemory);
        if (error == LXW_ERROR_CREATING_TMPFILE && reason != 0) throwCannotWrite(target_, reason);
        throwCannotWrite(target_, lxw_strerror(error));
    }
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
        // The file where rows wait has a name for a moment.
        const HeldSignals meanwhile;
        errno = 0;
        sheet_ = workbook_add_worksheet(book_.get(), names_.take(title).c_str());
        if (sheet_ == nullptr) fail(LXW_ERROR_CREATING_TMPFILE, errno);
        row_ = 0;
    }

    void endSheet(std::size_t columns = 1) {
        FILE* rows = sheet_->optimize_tmpfile;
        if (rows == nullptr) return;
        errno = 0;
        if (std::fflush(rows) != 0 || std::ferror(rows) != 0) {
            if (errno != 0) throwCannotWrite(target_, errno);
            throwCannotWrite(target_, "no space left for the rows, or a limit to the size of files");
        }
        largest_ = std::max(largest_, static_cast<std::uintmax_t>(std::max(0L, std::ftell(rows))) +
                                          columns * kAroundColumn);
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
            setWidth(column + shift, columnWidth(sheet, column, firstRow));
        if (shift != 0) setWidth(0, rowHeadingWidth(sheet, firstRow));
        std::string title = sheet.title;
        if (firstRow > 0) title += " (from row " + std::to_string(firstRow + 1) + ")";
        if (columns < sheet.columns.size()) {
            title += " (the first " + std::to_string(columns) + " of " +
                     std::to_string(sheet.columns.size()) + " columns)";
        }
        line(title, bold_);
        for (std::size_t note = 0; note < std::min<std::size_t>(sheet.notes.size(), 1000); ++note)
            line(sheet.notes[note], note_);
        ++row_;
        // Long headings are broken: tall enough for the tallest.
        std::size_t lines = 1;
        for (std::size_t column = 0; column < columns; ++column) {
            lines = std::max(lines, brokenLines(sheet.columns[column].readableHeading(),
                                                columnWidth(sheet, column, firstRow)));
        }
        check(worksheet_set_row(sheet_, static_cast<lxw_row_t>(row_),
                                kLineHeight * static_cast<double>(lines), nullptr));
        if (shift != 0) text(0, " ", textHeading_);
        for (std::size_t column = 0; column < columns; ++column) {
            const Spreadsheet::Column& one = sheet.columns[column];
            const std::string heading = one.readableHeading();
            text(column + shift, heading.empty() ? " " : heading, one.isText() ? textHeading_ : heading_);
        }
        ++row_;
        worksheet_freeze_panes(sheet_, static_cast<lxw_row_t>(row_), static_cast<lxw_col_t>(shift));
    }

    void setWidth(std::size_t column, std::size_t characters) {
        const auto place = static_cast<lxw_col_t>(column);
        worksheet_set_column(sheet_, place, place, static_cast<double>(characters) + 2.0, nullptr);
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

    PlainNumbers plain_; // a decimal comma would spoil the file
    std::filesystem::path target_;
    std::string directory_;
    PackedFile file_;
    std::unique_ptr<lxw_workbook, Free> book_;
    lxw_worksheet* sheet_ = nullptr;
    std::size_t row_ = 0;
    std::uintmax_t largest_ = 0;
    SheetNames names_;
    std::map<std::string, lxw_format*> numberFormats_;
    lxw_format* bold_ = nullptr;
    lxw_format* text_ = nullptr;
    lxw_format* heading_ = nullptr;
    lxw_format* textHeading_ = nullptr;
    lxw_format* note_ = nullptr;
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
    // Who watches has threads, and stops by exceptions.
    if (WritingWatch::current() != nullptr) return writeHere(book, pending);
    const std::optional<Answer> failure = workApart(kWriting, [&] {
        try {
            writeHere(book, pending);
            return Answer{};
        } catch (const std::runtime_error& error) { // it names the file
            return Answer{error.what(), {}};
        }
    });
    if (!failure) return writeHere(book, pending);
    if (!failure->error.empty()) throwCannotWrite(pending.target(), failure->error);
    if (!failure->bytes.empty()) throw std::runtime_error(failure->bytes);
}

} // namespace korvana
