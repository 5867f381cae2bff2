#include "host/data/CaseSelection.h"

#include "host/data/DataError.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace korvana {

SelectionPass::SelectionPass(const DataSet& data, std::string_view condition)
    : data_(data), expression_(condition, data), values_(expression_, data) {
    selection_.mask.resize(static_cast<std::size_t>(data.caseCount()));
}

bool SelectionPass::advance(std::size_t cases) {
    const std::size_t end = next_ + std::min(cases, selection_.mask.size() - next_);
    constexpr std::size_t atOnce = 4096;
    while (next_ < end) {
        results_.resize(std::min(atOnce, end - next_));
        expression_.evaluate(values_.from(next_), results_);
        for (const double value : results_)
            note(value);
    }
    return !atEnd();
}

void SelectionPass::note(double value) {
    const std::size_t now = next_++;
    if (!std::isnan(value)) {
        selection_.mask[now] = value != 0 ? 1 : 0;
        selection_.selectedCount += selection_.mask[now];
        return;
    }
    if (values_.anyMissing(now)) {
        ++selection_.missingCount;
        return;
    }
    std::string text("the condition '");
    text.append(expression_.text()).append("' has no finite value for case ").append(std::to_string(now + 1));
    if (data_.hasCaseNames()) text.append(" (").append(data_.caseName(static_cast<int>(now))).append(")");
    text.append(
        "; make sure that it does not divide by zero or take the logarithm or root of a value for which "
        "there is none");
    throw DataError(data_.path(), 0, 0, text);
}

CaseSelection selectCases(const DataSet& data, std::string_view condition) {
    SelectionPass pass(data, condition);
    pass.advance(static_cast<std::size_t>(data.caseCount()));
    return pass.take();
}

} // namespace korvana
