#pragma once

#include "host/results/Spreadsheet.h"
#include "support/automation/AutomationValue.h"

#include <optional>
#include <string>
#include <vector>

namespace korvana {

/// Which part of a spreadsheet goes into a file.
struct SheetPart {
    std::vector<std::string> fields{};    ///< the columns, in this order; none: all
    std::vector<std::string> variables{}; ///< the columns by whose values rows are taken; none: all rows
    ozm::AutomationValue::List codes{};   ///< these values
    bool rounded = false;                 ///< numbers as they are shown, not in full
};

/// The part; nothing where the spreadsheet has none of the fields. Columns are named by their names for
/// programs or by their headings, row headings by "Row". Rows of a spreadsheet without any of the variables
/// are all taken.
[[nodiscard]] std::optional<Spreadsheet> partOf(const Spreadsheet& sheet, const SheetPart& part);

} // namespace korvana
