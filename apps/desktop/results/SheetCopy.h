#pragma once

#include <QItemSelection>
#include <QMimeData>
#include <memory>

#include "host/results/Spreadsheet.h"

namespace korvana::desktop {

enum class CopyValues : std::uint8_t {
    Full,    ///< numbers at full precision, empty cells empty: for programs
    AsShown, ///< as the columns' formats show them: for people
};

struct CopyOptions {
    CopyValues values = CopyValues::Full;
    bool headings = false; ///< of the columns and, where rows have one, of the rows
};

/// Larger selections are copied as text only, which spreadsheet programs accept as well.
inline constexpr std::size_t mostHtmlCells = 200'000;

/// The selected cells as tab-separated text and as an HTML table. Rows and columns without a selected cell
/// are left out; cells that are not selected in the others stay empty. nullptr when no cell is selected.
/// Throws `std::bad_alloc` when there is not enough memory.
[[nodiscard]] std::unique_ptr<QMimeData>
copiedCells(const Spreadsheet& sheet, const QItemSelection& selection, const CopyOptions& options);

} // namespace korvana::desktop
