#include "module/groups/GroupCurves.h"
#include "module/groups/LifeTableColumns.h"
#include "module/ksample/KsOutput.h"
#include "module/resources/KSamples.h"
#include "module/resources/Resources.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/ResultTable.h"
#include "module/survdata/StatusLine.h"

#include <string>
#include <vector>

namespace ozm::survival {
namespace {

/// The table of one group; without rows for a group of too few cases, which a note says.
OutputResult WriteOne(const KsReportOf& of, std::size_t group, const LifeTable& table) {
    ResultTable sheet{std::string{Text(StrKsLifeTable)} + of.groups.Code(of.host, group)};
    sheet.AddNote(std::string{Text(table.rows > 0 ? StrLtNoteCorrected : StrLtFewerThan3Cases)});
    const auto lower = sheet.AddNumbers({"lowerLimit", StrLtLower1, StrLtLower2}, CellFormat::general(7));
    std::vector<ResultTable::Numbers> columns;
    for (const LifeTableColumn& column : lifeTableColumns)
        columns.push_back(sheet.AddNumbers({column.id, column.heading, 0, std::string{Text(column.inFull)}},
                                           column.format));
    const auto rows = static_cast<std::size_t>(table.rows);
    if (!sheet.AddRows(of.host, rows)) return OutputResult::Failed(StrKsNoMemory);
    for (std::size_t row = 0; row < rows; ++row) {
        sheet[lower][row] = table.lower[row];
        for (std::size_t c = 0; c < columns.size(); ++c)
            sheet[columns[c]][row] = lifeTableColumns[c].factor * (table.*lifeTableColumns[c].cells)[row];
    }
    return sheet.Write(of.host);
}

} // namespace

OutputResult WriteKsLifeTables(const KsReportOf& of) {
    const StatusLine line(of.host, StrComputingSurvival);
    GroupLifeTables result;
    if (const OutputResult tabulated = TabulateGroups(of.results.Sample(), result); !tabulated.made)
        return tabulated;
    for (std::size_t g = 0; g < result.tables.size(); ++g)
        if (const OutputResult written = WriteOne(of, g, result.tables[g]); !written.made) return written;
    return {};
}

} // namespace ozm::survival
