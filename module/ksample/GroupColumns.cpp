#include "module/ksample/GroupColumns.h"

#include "module/resources/KSamples.h"
#include "module/survdata/ReportLines.h"

#include <cstdint>

namespace ozm::survival {

GroupColumns::GroupColumns(const KsReportOf& of, ResultTable& table, const GroupColumnNames& names)
    : of_(of), table_(table),
      code_(table.AddNumbers({names.id, names.heading1, names.heading2}, CellFormat::general(15))) {
    bool any = false;
    for (const double code : of.groups.codes) {
        labels_.push_back(LabelOfCode(of.host, of.groups.shared.First(ListGrouping), code).value_or(""));
        any = any || !labels_.back().empty();
    }
    shown_.assign(labels_.begin(), labels_.end());
    if (any) label_ = table.AddMarks({names.labelId, names.heading1, StrKsColLabel}, shown_);
}

void GroupColumns::Name(std::size_t row, std::size_t group) {
    table_[code_][row] = of_.groups.codes[group];
    if (label_) table_[*label_][row] = static_cast<std::uint8_t>(group);
}

} // namespace ozm::survival
