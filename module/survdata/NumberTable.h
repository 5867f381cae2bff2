#pragma once

#include "module/survdata/HostArray.h"
#include "support/CAnalysisSupport.h"

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace ozm::survival {

/// A spreadsheet column with headings from the string table (0: none) and no cells yet. Programs find it by
/// its id, lowerCamelCase words without an abbreviation ("standardError").
SheetColumn HeadedColumn(std::string_view id, int heading1, int heading2, CellFormat format);

/// A spreadsheet of numbers while it is filled: title, notes and columns first, then the rows, then the
/// cells.
class NumberTable {
public:
    explicit NumberTable(std::string title);

    void AddNote(std::string note);
    void AddColumn(std::string_view id, int heading1, int heading2, CellFormat format);
    /// Marks a table whose values stand in the text report already.
    void RepeatsReport() { sheet_.repeatsReport = true; }
    /// Makes room for rows of empty cells. False when the host refused it.
    [[nodiscard]] bool AddRows(CAnalysisSupport& host, std::size_t rows);
    /// A last column of texts, one per row, which live until the table is written.
    void AddTexts(std::string_view id, int heading1, int heading2, std::span<const std::string> texts);
    void NameRow(std::string heading) { sheet_.rowHeadings.push_back(std::move(heading)); }
    /// Row and column from 0.
    double& Cell(std::size_t row, std::size_t column) { return cells_.Span()[column * rows_ + row]; }

    /// Hands the table to the host. Answers the string number of the message to show, 0 when all went well.
    [[nodiscard]] int Write(CAnalysisSupport& host);

private:
    SheetSpec sheet_;
    std::size_t rows_ = 0;
    std::size_t numberColumns_ = 0;
    HostArray<double> cells_;
};

} // namespace ozm::survival
