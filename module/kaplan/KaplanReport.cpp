#include "module/kaplan/KaplanOutput.h"
#include "module/kaplan/KaplanTables.h"
#include "module/resources/Kaplan.h"
#include "module/resources/Resources.h"
#include "module/resources/Shared.h"
#include "module/survdata/InputHeader.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/StatusLine.h"

namespace ozm::survival {

std::vector<std::string> KaplanSummaryLines(CAnalysisSupport& host, const SharedSettings& shared,
                                            const KaplanResults& results) {
    return {std::string{Text(StrKmVariable)} + TimesName(host, shared),
            std::string{Text(StrKmCensoringVariable)} + VariableName(host, shared.First(ListCensoring)),
            std::string{Text(StrKmValid)} + FormatCount(results.Valid()),
            std::string{Text(StrKmUncensored)} + FormatCount(results.uncensored),
            std::string{Text(StrKmCensored)} + FormatCount(results.censored)};
}

OutputResult WriteKaplanReport(CAnalysisSupport& host, const SharedSettings& shared, KaplanResults& results) {
    const StatusLine line(host, StrPrinting);
    OpenReport(host, shared, StrKmResultsTitle);
    for (const std::string& each : KaplanSummaryLines(host, shared, results))
        WriteLine(host, each);
    host.newline(1);
    WriteInputHeader(host, shared);
    host.type();
    return WriteKaplanTables(host, results);
}

} // namespace ozm::survival
