#include "module/survdata/SelectionChecks.h"

#include "module/resources/StringIds.h"
#include "module/survdata/CodeComparison.h"
#include "module/survdata/ReportLines.h"

#include <cmath>
#include <vector>

namespace ozm::survival {
namespace {

std::string CodeText(double code) {
    return std::isfinite(code) ? FormatNumber(code) : std::string{"not set"};
}

} // namespace

std::string DescribeCodes(CAnalysisSupport& host, int variable) {
    constexpr int codesShown = 12;
    std::vector<CodeCount> codes;
    const int all = host.ReadDataToGetDefaultCodes(variable, {.most = codesShown}, codes);
    if (all < 0) return {};
    std::string text = "Codes of '" + VariableName(host, variable) + "' among the selected cases: ";
    if (codes.empty()) return text + "none.";
    for (std::size_t i = 0; i < codes.size(); ++i) {
        if (i > 0) text += ", ";
        text += FormatNumber(codes[i].code);
        if (!codes[i].text.empty()) text += " = " + codes[i].text;
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

std::string DescribeReading(CAnalysisSupport& host, const SharedSettings& settings,
                            const ReadingCounts& counts) {
    std::string text = FormatCount(host.ss_nb()) + " cases in the data, " +
                       FormatNumber(counts.distinctCasesRead, 10) + " selected, " +
                       FormatNumber(counts.distinctValid, 10) + " valid";
    const auto reason = [&](std::int32_t count, std::string_view why) {
        if (count > 0) text += "; " + FormatCount(count) + " " + std::string{why};
    };
    reason(counts.otherCode, "with another code than complete (" + CodeText(settings.completeCode) +
                                 ") or censored (" + CodeText(settings.censoredCode) + ")");
    reason(counts.otherGroup, "with another group code than " + CodeText(settings.groupCodes[0]) + " or " +
                                  CodeText(settings.groupCodes[1]));
    reason(counts.missing, "without a survival time");
    reason(counts.invalidDate, "with an invalid date");
    reason(counts.negativeTime, "with a negative survival time");
    text += ".";
    if (const std::string codes = DescribeCodes(host, settings.First(ListCensoring)); !codes.empty())
        text += "\n" + codes;
    if (counts.otherGroup == 0) return text;
    if (const std::string codes = DescribeCodes(host, settings.First(ListGrouping)); !codes.empty())
        text += "\n" + codes;
    return text;
}

} // namespace ozm::survival
