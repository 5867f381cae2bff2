#include "host/data/CaseSelection.h"

#include "host/data/DataError.h"
#include "host/data/Expression.h"

#include <cstddef>
#include <string>

namespace korvana {

CaseSelection selectCases(const DataSet& data, std::string_view condition) {
    const Expression expression(condition, data);
    CaseValues cases(expression, data);
    CaseSelection selection;
    selection.mask.resize(static_cast<std::size_t>(data.caseCount()));
    for (std::size_t i = 0; i < selection.mask.size(); ++i) {
        const auto value = expression.evaluate(cases.take(i));
        if (value) {
            selection.mask[i] = *value != 0 ? 1 : 0;
            selection.selectedCount += selection.mask[i];
            continue;
        }
        if (cases.anyMissing()) {
            ++selection.missingCount;
            continue;
        }
        std::string text("the condition '");
        text.append(condition).append("' has no finite value for case ").append(std::to_string(i + 1));
        if (data.hasCaseNames()) text.append(" (").append(data.caseName(static_cast<int>(i))).append(")");
        text.append(
            "; make sure that it does not divide by zero or take the logarithm or root of a value for which "
            "there is none");
        throw DataError(data.path(), 0, 0, text);
    }
    return selection;
}

} // namespace korvana
