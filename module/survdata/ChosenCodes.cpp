#include "module/survdata/ChosenCodes.h"

#include "support/CodeComparison.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace ozm::survival {
namespace {

using Fault = ChosenCodes::Fault;

Fault AllCodes(CAnalysisSupport& host, int variable, std::size_t most, std::vector<double>& codes) {
    // Values that are equal as codes are one group, so there may be more of them than groups.
    std::vector<CodeCount> found;
    const int all = host.ReadDataToGetDefaultCodes(variable, {.most = static_cast<int>(16 * most)}, found);
    if (all < 0) return Fault::Unreadable;
    for (const CodeCount& code : found)
        if (codes.empty() || !CodesEqual(codes.back(), code.code)) codes.push_back(code.code);
    return std::cmp_greater(all, found.size()) ? Fault::TooMany : Fault::None;
}

Fault Check(const std::vector<double>& codes, double& wrong) {
    for (auto code = codes.begin(); code != codes.end(); ++code) {
        wrong = *code;
        if (!std::isfinite(*code)) return Fault::NoNumber;
        if (std::any_of(codes.begin(), code, [&](double before) { return CodesEqual(before, *code); }))
            return Fault::Twice;
    }
    return Fault::None;
}

} // namespace

ChosenCodes ChooseCodes(CAnalysisSupport& host, int variable, const std::vector<double>& chosen,
                        std::size_t most) {
    ChosenCodes result;
    result.codes = chosen;
    if (chosen.empty())
        result.fault = AllCodes(host, variable, most, result.codes);
    else
        result.fault = Check(chosen, result.code);
    if (result.fault == Fault::None && result.codes.size() > most) result.fault = Fault::TooMany;
    return result;
}

} // namespace ozm::survival
