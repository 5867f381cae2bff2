#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <xlsxwriter.h>

#include "host/results/OutputFile.h"
#include "host/results/PlainNumbers.h"
#include "host/results/SheetNames.h"
#include "host/results/XlsxPacking.h"
#include "support/services/SheetService.h"

namespace korvana {

// The limits of the file format.
inline constexpr std::size_t mostSheetRows = 1048576;
inline constexpr std::size_t mostSheetColumns = 16384;

inline constexpr const char* noMemoryForWorkbook = "not enough memory";

/// A workbook under construction, one sheet at a time, row after row. A failure throws a std::runtime_error
/// that names the file, even where the library does not notice it.
class XlsxBook {
public:
    /// `large`: a sheet may outgrow the 4 GB of the plain container.
    XlsxBook(const PendingFile& pending, bool large);
    /// Packs the sheets into the file.
    void finish();

    /// The title becomes a legal name that no other sheet has.
    void beginSheet(std::string_view title);
    /// `columns`: how many it has, at most.
    void endSheet(std::size_t columns = 1);

    /// The row that is being written, counted from 0.
    [[nodiscard]] std::size_t row() const { return row_; }
    void nextRow() { ++row_; }
    void text(std::size_t column, std::string_view value, lxw_format* look = nullptr);
    void number(std::size_t column, double value, lxw_format* look = nullptr);
    /// A row of one text; does nothing once the sheet is full.
    void line(std::string_view value, lxw_format* look);

    void setWidth(std::size_t column, std::size_t characters);
    /// Makes the row as high as that many lines.
    void setHeight(std::size_t lines);
    /// Keeps everything above the row, and this many columns, in view.
    void freezeAbove(std::size_t columns);

    /// The format of numbers; null for the library's default.
    lxw_format* numberFormat(ozm::CellFormat wanted);
    [[nodiscard]] lxw_format* bold() const { return bold_; }
    [[nodiscard]] lxw_format* report() const { return text_; }
    [[nodiscard]] lxw_format* note() const { return note_; }
    [[nodiscard]] lxw_format* heading(bool ofTexts) const { return ofTexts ? textHeading_ : heading_; }

private:
    struct Free {
        void operator()(lxw_workbook* book) const;
    };

    [[noreturn]] void fail(lxw_error error, int reason = 0) const;
    void check(lxw_error error) const;
    template <class Set>
    lxw_format* format(Set set);

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

} // namespace korvana
