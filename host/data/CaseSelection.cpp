#include "host/data/CaseSelection.h"

#include "host/data/DataError.h"

#include <algorithm>
#include <string>

namespace korvana {

SelectionPass::SelectionPass(const DataSet& data, std::string_view condition)
    : data_(data), expression_(condition, data), values_(expression_, data) {
    selection_.mask.resize(static_cast<std::size_t>(data.caseCount()));
}

bool SelectionPass::advance(std::size_t cases) {
    const std::size_t end = next_ + std::min(cases, selection_.mask.size() - next_);
    for (; next_ < end; ++next_) {
        const auto value = expression_.evaluate(values_.take(next_));
        if (value) {
            selection_.mask[next_] = *value != 0 ? 1 : 0;
            selection_.selectedCount += selection_.mask[next_];
            continue;
        }
        if (values_.anyMissing()) {
            ++selection_.missingCount;
            continue;
        }
        std::string text("the condition '");
        text.append(expression_.text())
            .append("' has no finite value for case ")
            .append(std::to_string(next_ + 1));
        if (data_.hasCaseNames())
            text.append(" (").append(data_.caseName(static_cast<int>(next_))).append(")");
        text.append(
            "; make sure that it does not divide by zero or take the logarithm or root of a value for which "
            "there is none");
        throw DataError(data_.path(), 0, 0, text);
    }
    return !atEnd();
}

CaseSelection selectCases(const DataSet& data, std::string_view condition) {
    SelectionPass pass(data, condition);
    pass.advance(static_cast<std::size_t>(data.caseCount()));
    return pass.take();
}

} // namespace korvana
