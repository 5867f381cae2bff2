#include "module/survdata/NumberTable.h"

#include "module/resources/Shared.h"
#include "module/resources/Resources.h"
#include "module/survdata/Headings.h"

#include <algorithm>
#include <limits>

namespace ozm::survival {

SheetColumn HeadedColumn(std::string_view id, int heading1, int heading2, CellFormat format) {
    return {std::string{Text(heading1)},
            std::string{Text(heading2)},
            format,
            std::span<const double>{},
            std::string{id},
            HeadingInFull(heading1, heading2)};
}

NumberTable::NumberTable(std::string title) {
    sheet_.title = std::move(title);
}

void NumberTable::AddNote(std::string note) {
    sheet_.notes.push_back(std::move(note));
}

void NumberTable::AddColumn(std::string_view id, int heading1, int heading2, CellFormat format) {
    sheet_.columns.push_back(HeadedColumn(id, heading1, heading2, format));
}

bool NumberTable::AddRows(CAnalysisSupport& host, std::size_t rows) {
    rows_ = rows;
    numberColumns_ = sheet_.columns.size();
    if (!cells_.Allocate(host, rows * numberColumns_)) return false;
    std::fill(cells_.Span().begin(), cells_.Span().end(), std::numeric_limits<double>::quiet_NaN());
    return true;
}

void NumberTable::AddTexts(std::string_view id, int heading1, int heading2,
                           std::span<const std::string> texts) {
    sheet_.columns.push_back(HeadedColumn(id, heading1, heading2, CellFormat::general()));
    sheet_.columns.back().cells = texts;
}

int NumberTable::Write(CAnalysisSupport& host) {
    for (std::size_t k = 0; k < numberColumns_; ++k)
        sheet_.columns[k].cells = std::span<const double>{cells_.Span().subspan(k * rows_, rows_)};
    return host.looka4(sheet_) == 0 ? 0 : StrSpreadsheetFailed;
}

} // namespace ozm::survival
