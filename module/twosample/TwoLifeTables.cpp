#include "module/groups/GroupCurves.h"
#include "module/groups/LifeTableColumns.h"
#include "module/resources/Groups.h"
#include "module/resources/Resources.h"
#include "module/resources/TwoSamples.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/ResultTable.h"
#include "module/survdata/StatusLine.h"
#include "module/twosample/TwoOutput.h"

#include <array>
#include <string>

namespace ozm::survival {
namespace {

constexpr std::array groupTitles{StrTwoGroup1, StrTwoGroup2};

/// "Group 1: Code         Group 2: Code      " with the codes where the blanks are.
std::string CodesLine(CAnalysisSupport& host, const NamedGroups& groups) {
    const std::string line = Trimmed(StrTwoLifeTableCodes);
    const std::string_view code = "Code";
    const std::size_t first = line.find(code) + code.size();
    const std::size_t second = line.find_first_not_of(' ', first);
    return line.substr(0, first) + " " + groups.Code(host, 0) + "    " + line.substr(second) + " " +
           groups.Code(host, 1);
}

/// A column of a measure for each group, in the order of the measures.
std::vector<ResultTable::Numbers> AddMeasures(ResultTable& sheet) {
    std::vector<ResultTable::Numbers> columns;
    for (const LifeTableColumn& measure : lifeTableColumns)
        for (std::size_t g = 0; g < groupTitles.size(); ++g) {
            const std::string id = std::string{measure.id} + "Group" + FormatCount(static_cast<int>(g) + 1);
            const std::string inFull =
                std::string{Text(groupTitles[g])} + " " + std::string{Text(measure.inFull)};
            columns.push_back(
                sheet.AddNumbers({id, groupTitles[g], measure.heading, inFull}, measure.format));
        }
    return columns;
}

} // namespace

OutputResult WriteGroupLifeTables(CAnalysisSupport& host, const SharedSettings& shared,
                                  const PooledSample& sample) {
    const StatusLine line(host, StrComputingSurvival);
    GroupLifeTables result;
    if (const OutputResult tabulated = TabulateGroups(sample, result); !tabulated.made) return tabulated;
    ResultTable sheet{std::string{Text(StrTwoLifeTable)}};
    sheet.AddNote(CodesLine(host, {shared, shared.groupCodes}));
    sheet.AddNote(std::string{Text(StrLtNoteCorrected)});
    for (std::size_t g = 0; g < groupTitles.size(); ++g)
        if (result.tables[g].rows == 0)
            sheet.AddNote(std::string{Text(groupTitles[g])} + std::string{Text(StrLtFewerThan3Cases)});
    const auto lower = sheet.AddNumbers({"lowerLimit", StrLtLower1, StrLtLower2}, CellFormat::general(7));
    const std::vector<ResultTable::Numbers> columns = AddMeasures(sheet);
    if (!sheet.AddRows(host, static_cast<std::size_t>(result.Rows())))
        return OutputResult::Failed(StrTwoNoMemory);
    for (std::size_t g = 0; g < groupTitles.size(); ++g) {
        const LifeTable& table = result.tables[g];
        for (std::size_t row = 0; row < static_cast<std::size_t>(table.rows); ++row) {
            sheet[lower][row] = table.lower[row];
            std::size_t column = g;
            for (const LifeTableColumn& measure : lifeTableColumns) {
                sheet[columns[column]][row] = measure.factor * (table.*measure.cells)[row];
                column += groupTitles.size();
            }
        }
    }
    return sheet.Write(host);
}

} // namespace ozm::survival
