#pragma once

#include <cstdint>
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
        Probability, ///< as General, but "< 1e-30" where it is smaller than that
    };
    static constexpr double leastProbability = 1e-30; ///< what a `Probability` shows as a number at least

    Kind kind = Kind::General;
    std::uint8_t digits = 6;

    static constexpr CellFormat general(std::uint8_t digits = 6) { return {Kind::General, digits}; }
    static constexpr CellFormat fixed(std::uint8_t digits) { return {Kind::Fixed, digits}; }
    static constexpr CellFormat probability(std::uint8_t digits = 5) { return {Kind::Probability, digits}; }
    static constexpr CellFormat integer() { return {Kind::Integer, 0}; }
};

/// Texts that stand in few distinct forms: cell i holds texts[index[i]]. The views live as long as the call.
struct DictionaryCells {
    std::span<const std::uint8_t> index;
    std::span<const std::string_view> texts;
};

/// One column. Exactly one of the cell kinds; a NaN among doubles is an empty cell. All columns of a
/// spreadsheet are equally long. The spans are read during the call only: the host copies what it keeps.
struct SheetColumn {
    std::string heading1; ///< upper line of the heading, eight characters wide in this module's tables
    std::string heading2; ///< lower line, may be empty
    CellFormat format;
    std::variant<std::span<const double>, std::span<const std::int32_t>, DictionaryCells,
                 std::span<const std::string>>
        cells;
    /// Name by which programs find the column whatever its heading says ("standardError"): unique in its
    /// spreadsheet, the same in every run. Empty where there is none.
    std::string id{};
    /// Heading in full, for who has more room than two short lines; empty where the lines say it already.
    std::string title{};
};

/// A results spreadsheet as a results routine hands it over.
struct SheetSpec {
    std::string title;
    std::vector<std::string> notes;       ///< lines shown with the table
    std::vector<std::string> rowHeadings; ///< one per row, or empty when rows have no heading
    std::vector<SheetColumn> columns;
    /// Its values stand in the text report already: a report for people leaves the table out.
    bool repeatsReport = false;
};

/// Creates results spreadsheets in the host's results.
class SheetService {
public:
    virtual ~SheetService() = default;

    /// Creates a spreadsheet whose columns all show the general format (`CellFormat` of the columns is
    /// ignored). Answers 0, or non-zero when none was created.
    virtual short table4(const SheetSpec& sheet) = 0;

    /// Creates a spreadsheet with a format per column. Answers 0, or non-zero when none was created.
    virtual short looka4(const SheetSpec& sheet) = 0;

    /// Renames a column (0-based) of the spreadsheet created last. Answers 0, or non-zero when there is none
    /// such.
    virtual short RenameColumn(int column, std::string_view heading1, std::string_view heading2) = 0;
};

} // namespace ozm
