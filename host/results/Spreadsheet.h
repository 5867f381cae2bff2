#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "host/results/OutputOrigin.h"
#include "support/services/SheetService.h"

namespace korvana {

/// A results table, stored by columns, so that ten million rows need no more memory than their values.
/// Columns should be equally long; the missing cells of a shorter one read as empty.
struct Spreadsheet {
    /// Texts with few distinct values: cell i holds texts[index[i]]; an index beyond the texts is an empty
    /// cell.
    struct Dictionary {
        std::vector<std::uint8_t> index;
        std::vector<std::string> texts;
    };

    /// One column. A NaN among the doubles is an empty cell.
    struct Column {
        std::string heading1;
        std::string heading2; ///< lower line, may be empty
        ozm::CellFormat format;
        std::variant<std::vector<double>, std::vector<std::int32_t>, Dictionary, std::vector<std::string>>
            cells;
        std::string id{};    ///< name for programs, the same in every run; may be empty
        std::string title{}; ///< heading in full, if the two lines abbreviate it

        [[nodiscard]] std::size_t size() const;
        [[nodiscard]] bool isText() const { return cells.index() >= 2; }
        /// Both lines of the heading joined by a blank, trimmed.
        [[nodiscard]] std::string heading() const;
        /// The heading as people write it: in full, in one line, without double blanks.
        [[nodiscard]] std::string readableHeading() const;
    };

    /// A look at one cell; the text lives as long as the spreadsheet is unchanged.
    struct Cell {
        enum class Kind : std::uint8_t { Empty, Number, Integer, Text };
        Kind kind = Kind::Empty;
        std::int32_t integer = 0;
        double number = 0.0; ///< finite or infinite, never NaN
        std::string_view text;
    };

    std::string title;
    std::vector<std::string> notes;
    std::vector<std::string> rowHeadings; ///< one per row, or empty when rows have no heading
    std::vector<Column> columns;
    bool repeatsReport = false; ///< a report already has its values: reports for people leave it out
    bool essential = false;     ///< reports for people show it before charts
    std::shared_ptr<const OutputOrigin> origin{}; ///< nullptr: unknown
    std::vector<std::string> footnotes{};

    /// Copies what a module passes, and tells it of each column that is copied.
    [[nodiscard]] static Spreadsheet fromSpec(const ozm::SheetSpec& spec);

    [[nodiscard]] std::size_t rowCount() const;
    /// Row and column count from 0. Outside the table: an empty cell.
    [[nodiscard]] Cell cell(std::size_t row, std::size_t column) const;
    /// Empty where the row has no heading.
    [[nodiscard]] std::string_view rowHeading(std::size_t row) const;
    /// The cell as people read it, by the column's format; an empty cell gives `empty`.
    void appendCellText(std::string& out, std::size_t row, std::size_t column,
                        std::string_view empty = "--") const;
    [[nodiscard]] std::string cellText(std::size_t row, std::size_t column,
                                       std::string_view empty = "--") const;
};

} // namespace korvana
