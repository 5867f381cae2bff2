#include "host/results/XlsxBook.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <sys/resource.h>
#include <system_error>

#include "host/results/Unfinished.h"
#include "host/results/XlsxText.h"

namespace korvana {
namespace {

constexpr double lineHeight = 15.0; // points
// Bytes of a sheet apart from its rows, and the share of one column.
constexpr std::uintmax_t aroundRows = 2048;
constexpr std::uintmax_t aroundColumn = 128;

} // namespace

/// The library closes the files of waiting rows only when it packs them.
void XlsxBook::Free::operator()(lxw_workbook* book) const {
    lxw_worksheet* sheet = nullptr;
    STAILQ_FOREACH(sheet, book->worksheets, list_pointers)
    if (sheet->optimize_tmpfile != nullptr) std::fclose(sheet->optimize_tmpfile);
    lxw_workbook_free(book);
}

/// The library's text, or a plainer one where we have it.
void XlsxBook::fail(lxw_error error, int reason) const {
    if (error == LXW_ERROR_MEMORY_MALLOC_FAILED || reason == ENOMEM)
        throwCannotWrite(target_, noMemoryForWorkbook);
    if (error == LXW_ERROR_CREATING_TMPFILE && reason != 0) throwCannotWrite(target_, reason);
    throwCannotWrite(target_, lxw_strerror(error));
}

void XlsxBook::check(lxw_error error) const {
    if (error != LXW_NO_ERROR) fail(error);
}

template <class Set>
lxw_format* XlsxBook::format(Set set) {
    lxw_format* made = workbook_add_format(book_.get());
    if (made == nullptr) fail(LXW_ERROR_MEMORY_MALLOC_FAILED);
    set(made);
    return made;
}

XlsxBook::XlsxBook(const PendingFile& pending, bool large)
    : target_(pending.target()), directory_(pending.path().parent_path().string()),
      file_(pending.path(), target_) {
    if (directory_.empty()) directory_ = ".";
    // Rows wait in a file beside the workbook, on the same disk.
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

void XlsxBook::finish() {
    // The library does not check whether the waiting rows reached the disk, so check before they are packed.
    std::error_code unknown;
    const auto space = std::filesystem::space(directory_, unknown);
    if (!unknown && space.available < largest_) throwCannotWrite(target_, ENOSPC);
    rlimit limit{};
    if (::getrlimit(RLIMIT_FSIZE, &limit) == 0 && limit.rlim_cur < largest_ + aroundRows)
        throwCannotWrite(target_, EFBIG);
    const auto [error, reason] = file_.pack(book_.release());
    if (error != LXW_NO_ERROR && (reason == EFBIG || reason == ENOSPC || reason == EDQUOT))
        throwCannotWrite(target_, reason);
    if (error != LXW_NO_ERROR) fail(error, reason);
}

void XlsxBook::beginSheet(std::string_view title) {
    // The file of waiting rows has a name for a moment.
    const HeldSignals meanwhile;
    errno = 0;
    sheet_ = workbook_add_worksheet(book_.get(), names_.take(title).c_str());
    if (sheet_ == nullptr) fail(LXW_ERROR_CREATING_TMPFILE, errno);
    row_ = 0;
}

void XlsxBook::endSheet(std::size_t columns) {
    FILE* rows = sheet_->optimize_tmpfile;
    if (rows == nullptr) return;
    errno = 0;
    if (std::fflush(rows) != 0 || std::ferror(rows) != 0) {
        if (errno != 0) throwCannotWrite(target_, errno);
        throwCannotWrite(target_, "no space left for the rows, or a limit to the size of files");
    }
    largest_ = std::max(largest_,
                        static_cast<std::uintmax_t>(std::max(0L, std::ftell(rows))) + columns * aroundColumn);
}

void XlsxBook::text(std::size_t column, std::string_view value, lxw_format* look) {
    const std::string line = xlsxText(value);
    if (line.empty()) return;
    check(worksheet_write_string(sheet_, static_cast<lxw_row_t>(row_), static_cast<lxw_col_t>(column),
                                 line.c_str(), look));
}

void XlsxBook::number(std::size_t column, double value, lxw_format* look) {
    check(worksheet_write_number(sheet_, static_cast<lxw_row_t>(row_), static_cast<lxw_col_t>(column), value,
                                 look));
}

void XlsxBook::line(std::string_view value, lxw_format* look) {
    if (row_ >= mostSheetRows) return;
    text(0, value, look);
    ++row_;
}

void XlsxBook::setWidth(std::size_t column, std::size_t characters) {
    const auto place = static_cast<lxw_col_t>(column);
    worksheet_set_column(sheet_, place, place, static_cast<double>(characters) + 2.0, nullptr);
}

void XlsxBook::setHeight(std::size_t lines) {
    check(worksheet_set_row(sheet_, static_cast<lxw_row_t>(row_), lineHeight * static_cast<double>(lines),
                            nullptr));
}

void XlsxBook::freezeAbove(std::size_t columns) {
    worksheet_freeze_panes(sheet_, static_cast<lxw_row_t>(row_), static_cast<lxw_col_t>(columns));
}

lxw_format* XlsxBook::numberFormat(ozm::CellFormat wanted) {
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
        if (wanted.digits > 0) picture += "." + std::string(std::min<std::size_t>(wanted.digits, 17), '0');
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

} // namespace korvana
