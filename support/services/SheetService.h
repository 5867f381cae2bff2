#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace ozm {

/// How a number of a spreadsheet column is shown. The value itself always travels at full double precision.
struct CellFormat {
    enum class Kind : std::uint8_t {
        General,     ///< up to `digits` significant digits, no trailing zeros
        Fixed,       ///< exactly `digits` decimals
        Integer,     ///< a whole number
        Probability, ///< as General, but "< 1e-30" for smaller values
    };
    static constexpr double leastProbability =
        1e-30; ///< the smallest value that `Probability` shows as a number

    Kind kind = Kind::General;
    std::uint8_t digits = 6;

    static constexpr CellFormat general(std::uint8_t digits = 6) { return {Kind::General, digits}; }
    static constexpr CellFormat fixed(std::uint8_t digits) { return {Kind::Fixed, digits}; }
    static constexpr CellFormat probability(std::uint8_t digits = 5) { return {Kind::Probability, digits}; }
    static constexpr CellFormat integer() { return {Kind::Integer, 0}; }
};

/// Texts with few distinct values: cell i holds texts[index[i]]. The views live as long as the call.
struct DictionaryCells {
    std::span<const std::uint8_t> index;
    std::span<const std::string_view> texts;
};

/// One column. Exactly one of the kinds of cells is used; a NaN among doubles is an empty cell. All columns
/// of a spreadsheet are equally long. The spans are read during the call only: the host copies what it keeps.
struct SheetColumn {
    std::string heading1; ///< upper line of the heading, eight characters wide in this module's tables
    std::string heading2; ///< lower line, may be empty
    CellFormat format;
    std::variant<std::span<const double>, std::span<const std::int32_t>, DictionaryCells,
                 std::span<const std::string>>
        cells;
    /// The name by which programs find the column, independent of its heading ("standardError"): unique in
    /// its spreadsheet, the same in every run. Empty where there is none.
    std::string id{};
    /// The heading in full, where there is more room than two short lines; empty if these are not shortened.
    std::string title{};
    /// The host calls it, if there is one, once it has copied the cells and reads them no more: whoever gives
    /// them back then never holds a long table together with its copy.
    std::function<void()> copied{};
};

/// A results spreadsheet, passed by an analysis.
struct SheetSpec {
    std::string title;
    std::vector<std::string> notes;       ///< lines shown with the table
    std::vector<std::string> rowHeadings; ///< one per row, or empty when rows have no heading
    std::vector<SheetColumn> columns;
    /// The text report already has these values: a report for people leaves the table out.
    bool repeatsReport = false;
    std::vector<std::string> footnotes{}; ///< lines shown below the table
    /// What readers want first, however long: a report for people shows it before charts.
    bool essential = false;
};

/// Creates results spreadsheets in the host's results.
class SheetService {
public:
    virtual ~SheetService() = default;

    /// Creates a spreadsheet whose columns all show the general format (`CellFormat` of the columns is
    /// ignored). Returns 0, or non-zero when none was created.
    virtual short table4(const SheetSpec& sheet) = 0;

    /// Creates a spreadsheet with a format per column. Returns 0, or non-zero when none was created.
    virtual short looka4(const SheetSpec& sheet) = 0;

    /// Renames a column (0-based) of the spreadsheet created last. Returns 0, or non-zero when there is no
    /// such column.
    virtual short RenameColumn(int column, std::string_view heading1, std::string_view heading2) = 0;
};

} // namespace ozm
