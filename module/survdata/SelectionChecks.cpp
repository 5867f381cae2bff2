#include "module/survdata/SelectionChecks.h"

#include "module/resources/Resources.h"
#include "module/resources/Shared.h"
#include "module/survdata/ReportLines.h"
#include "support/CodeComparison.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace ozm::survival {

std::string DescribeCodes(CAnalysisSupport& host, int variable) {
    std::vector<CodeCount> codes;
    const int all = host.ReadDataToGetDefaultCodes(variable, {.most = static_cast<int>(codesShown)}, codes);
    if (all < 0) return {};
    std::vector<std::string> list;
    for (const CodeCount& code : codes)
        list.push_back(
            Filled(code.cases == 1 ? StrOneCase : StrManyCases,
                   {FormatExact(code.code) + (code.text.empty() ? "" : " = " + InOneLine(code.text)),
                    FormatCount(code.cases)}));
    const auto more = static_cast<std::size_t>(all) - std::min(codes.size(), static_cast<std::size_t>(all));
    return Filled(StrCodesAmongCases,
                  {VariableName(host, variable),
                   list.empty() ? std::string{Text(StrNoCodes)} : Listed(list, 0, StrAndMore, more)});
}

bool IsCodeOf(CAnalysisSupport& host, int variable, double code) {
    if (!std::isfinite(code)) return false;
    // A variable may have any number of codes: ask only for those that could be this one.
    constexpr double infinity = std::numeric_limits<double>::infinity();
    DefaultCodeOptions near{
        .most = 2 * static_cast<int>(equalCodesLieWithin) + 1, .least = code, .greatest = code};
    for (std::int64_t unit = 0; unit < equalCodesLieWithin; ++unit) {
        near.least = std::nextafter(near.least, -infinity);
        near.greatest = std::nextafter(near.greatest, infinity);
    }
    std::vector<CodeCount> codes;
    return host.ReadDataToGetDefaultCodes(variable, near, codes) != 0;
}

int CheckSelections(const SharedSettings& settings) {
    const auto times = settings.Times().size();
    if (times != 1 && times != 2 && times != 6) return StrInvalidTimeVariables;
    if (settings.lists[ListCensoring].size() != 1) return StrNoCensoringVariable;
    if (CodesEqual(settings.completeCode, settings.censoredCode)) return StrIdenticalCensoringCodes;
    return 0;
}

} // namespace ozm::survival
