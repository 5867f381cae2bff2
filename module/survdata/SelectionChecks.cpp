#include "module/survdata/SelectionChecks.h"

#include "module/resources/Shared.h"
#include "module/survdata/CodeComparison.h"
#include "module/survdata/ReportLines.h"

#include <vector>

namespace ozm::survival {

std::string DescribeCodes(CAnalysisSupport& host, int variable) {
    std::vector<CodeCount> codes;
    const int all = host.ReadDataToGetDefaultCodes(variable, {.most = static_cast<int>(codesShown)}, codes);
    if (all < 0) return {};
    std::string text = "Codes of '" + VariableName(host, variable) + "' among the selected cases: ";
    if (codes.empty()) return text + "none.";
    for (std::size_t i = 0; i < codes.size(); ++i) {
        if (i > 0) text += ", ";
        text += FormatNumber(codes[i].code);
        if (!codes[i].text.empty()) text += " = " + InOneLine(codes[i].text);
        text += " (" + FormatCount(codes[i].cases) + (codes[i].cases == 1 ? " case)" : " cases)");
    }
    const int more = all - static_cast<int>(codes.size());
    return text + (more > 0 ? ", and " + FormatCount(more) + " more." : ".");
}

int CheckSelections(const SharedSettings& settings) {
    const auto times = settings.Times().size();
    if (times != 1 && times != 2 && times != 6) return StrInvalidTimeVariables;
    if (settings.lists[ListCensoring].size() != 1) return StrNoCensoringVariable;
    if (CodesEqual(settings.completeCode, settings.censoredCode)) return StrIdenticalCensoringCodes;
    return 0;
}

} // namespace ozm::survival
