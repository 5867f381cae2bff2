#include "apps/cli/CodeChecks.h"

#include "apps/cli/Lists.h"
#include "apps/cli/UsageError.h"
#include "host/data/Codes.h"
#include "host/data/Describe.h"
#include "host/data/NumberText.h"
#include "support/CodeComparison.h"

#include <cmath>

namespace korvana::cli {
namespace {

constexpr int mostCodesListed = 20;

double codeOf(const ActiveData& data, int variable0, const CodeOption& option) {
    const auto code = resolveCode(data.dataSet(), variable0, option.text);
    if (code && std::isfinite(*code)) return *code;
    throw UsageError(option.name + ": '" + option.text + "' is neither a number nor a value label; " +
                     codesOf(data, variable0));
}

} // namespace

CodesFound findCodes(const ActiveData& data, int variable0, std::span<const double> codes) {
    const Variable& variable = data.dataSet().variable(variable0);
    const auto cells = data.dataSet().column(variable0);
    const auto mask = data.mask();
    CodesFound found{std::vector<bool>(codes.size(), false), false};
    std::size_t missed = codes.size();
    for (std::size_t i = 0; i < cells.size() && missed > 0; ++i) {
        if ((!mask.empty() && mask[i] == 0) || variable.isMissing(cells[i])) continue;
        bool known = false;
        for (std::size_t k = 0; k < codes.size(); ++k) {
            if (!ozm::CodesEqual(cells[i], codes[k])) continue;
            known = true;
            if (found.each[k]) continue;
            found.each[k] = true;
            --missed;
        }
        found.others = found.others || !known;
    }
    return found;
}

std::string noCaseHas(const std::string& option, double code) {
    return option + " " + numberText(code) + ": no case has this code";
}

std::string codesOf(const ActiveData& data, int variable0, std::span<const std::uint8_t> mask) {
    const DistinctValues codes =
        distinctCodes(data.dataSet(), variable0, mask.empty() ? data.mask() : mask, mostCodesListed);
    return "'" + data.dataSet().variable(variable0).name + "' has " + codesText(codes, mostCodesListed);
}

std::vector<double> resolveCodes(const ActiveData& data, int variable0,
                                 const std::vector<CodeOption>& options, const char* meaning) {
    std::vector<std::string> missing;
    for (const CodeOption& option : options)
        if (option.text.empty()) missing.push_back(option.name);
    if (!missing.empty())
        throw UsageError(joined(missing) + (missing.size() == 1 ? " is" : " are") + " missing: give " +
                         meaning + "; " + codesOf(data, variable0));
    std::vector<double> codes;
    for (const CodeOption& option : options)
        codes.push_back(codeOf(data, variable0, option));
    return codes;
}

} // namespace korvana::cli
