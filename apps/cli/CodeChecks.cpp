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

double codeOf(const ActiveData& data, int variable0, const std::string& option, const std::string& text) {
    const auto code = resolveCode(data.dataSet(), variable0, text);
    if (code && std::isfinite(*code)) return *code;
    throw UsageError(option + ": '" + text + "' is neither a number nor a value label; " +
                     codesOf(data, variable0));
}

} // namespace korvana::cli
