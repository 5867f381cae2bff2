#include "module/lifetable/LifeOutput.h"
#include "module/lifetable/LifeTables.h"
#include "module/resources/LifeTables.h"
#include "module/resources/Resources.h"
#include "module/survdata/InputHeader.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/StatusLine.h"

namespace ozm::survival {

std::vector<std::string> LifeSummaryLines(const LifeReportOf& of) {
    const auto line = [](int id, const std::string& value) { return std::string{Text(id)} + value; };
    const auto variable = [&](int id, SelectionListId list) {
        return line(id, VariableName(of.host, of.shared.First(list)));
    };
    std::vector<std::string> lines;
    if (of.results.fromTable)
        lines = {variable(StrLifeTableVariables, ListIntervalLimits),
                 variable(StrLifeWithdrawnVariable, ListWithdrawn),
                 variable(StrLifeDyingVariable, ListDying)};
    else
        lines = {line(StrLifeVariable, TimesName(of.host, of.shared)),
                 variable(StrLifeCensoringVariable, ListCensoring)};
    lines.push_back(line(StrLifeValid, FormatExact(of.results.valid)));
    lines.push_back(line(StrLifeUncensored, FormatExact(of.results.uncensored)) + "   " +
                    line(StrLifeCensored, " " + FormatExact(of.results.censored)));
    return lines;
}

OutputResult WriteLifeTable(const LifeReportOf& of) {
    const StatusLine line(of.host, StrPrinting);
    OpenReport(of.host, of.shared, StrLifeResults);
    for (const std::string& each : LifeSummaryLines(of))
        WriteLine(of.host, each);
    of.host.newline(1);
    WriteInputHeader(of.host, of.shared);
    of.host.type();
    return WriteLifeTableSheet(of);
}

} // namespace ozm::survival
