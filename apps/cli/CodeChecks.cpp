#include "apps/cli/CodeChecks.h"

#include "apps/cli/UsageError.h"
#include "host/data/Codes.h"
#include "host/data/Describe.h"

#include <algorithm>
#include <cfloat>
#include <cmath>

namespace korvana::cli {
namespace {

constexpr int mostCodesListed = 20;

/// Codes are compared as the analyses compare them, with room for the last places.
bool sameCode(double a, double b) {
    return std::fabs(a - b) <= 15 * DBL_EPSILON * std::max(std::fabs(a), std::fabs(b));
}

double codeOf(const ActiveData& data, int variable0, const CodePair::Option& option) {
    const auto code = resolveCode(data.dataSet(), variable0, option.text);
    if (code && std::isfinite(*code)) return *code;
    throw UsageError(std::string{option.name} + ": '" + option.text +
                     "' is neither a number nor a value label; " + codesOf(data, variable0));
}

} // namespace

CodeCounts countCodes(const ActiveData& data, int variable0, double first, double second) {
    const Variable& variable = data.dataSet().variable(variable0);
    const auto cells = data.dataSet().column(variable0);
    const auto mask = data.mask();
    CodeCounts counts;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        if ((!mask.empty() && mask[i] == 0) || variable.isMissing(cells[i])) continue;
        const bool isFirst = sameCode(cells[i], first);
        const bool isSecond = sameCode(cells[i], second);
        counts.first += isFirst ? 1 : 0;
        counts.second += isSecond ? 1 : 0;
        counts.neither += isFirst || isSecond ? 0 : 1;
    }
    return counts;
}

std::string codesOf(const ActiveData& data, int variable0) {
    const DistinctValues codes = distinctCodes(data.dataSet(), variable0, data.mask(), mostCodesListed);
    return "'" + data.dataSet().variable(variable0).name + "' has " + codesText(codes, mostCodesListed);
}

std::array<double, 2> resolveCodes(const ActiveData& data, int variable0, const CodePair& pair) {
    std::string missing;
    for (const CodePair::Option& option : {pair.first, pair.second})
        if (option.text.empty()) missing += (missing.empty() ? "" : " and ") + std::string{option.name};
    if (!missing.empty())
        throw UsageError(missing + (pair.first.text.empty() && pair.second.text.empty() ? " are" : " is") +
                         " missing: give " + pair.meaning + "; " + codesOf(data, variable0));
    return {codeOf(data, variable0, pair.first), codeOf(data, variable0, pair.second)};
}

} // namespace korvana::cli
