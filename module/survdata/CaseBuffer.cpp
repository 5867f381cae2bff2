#include "module/survdata/CaseBuffer.h"

#include "support/CAnalysisSupport.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace ozm::survival {
namespace {

/// Missing-data codes are compared as single-precision numbers; one beyond their range equals no value.
double SinglePrecision(double code) {
    return std::abs(code) <= std::numeric_limits<float>::max() ? static_cast<double>(static_cast<float>(code))
                                                               : unsetCode;
}

} // namespace

CaseBuffer::CaseBuffer(CAnalysisSupport& host, WorkAreas& work, std::span<const int> variables)
    : values_(work.values), variables_(work.variables), missing_(work.missing) {
    const std::size_t count = variables.size();
    if (count > work.values.size()) {
        own_.assign(2 * count, 0.0);
        ownVariables_.assign(count, 0);
        values_ = std::span{own_}.first(count);
        missing_ = std::span{own_}.last(count);
        variables_ = ownVariables_;
    }
    values_ = values_.first(count);
    missing_ = missing_.first(count);
    variables_ = variables_.first(count);
    std::ranges::copy(variables, variables_.begin());
    for (std::size_t place = 0; place < count; ++place) {
        double code = unsetCode;
        host.getmd5(variables[place], code);
        missing_[place] = SinglePrecision(code);
    }
}

} // namespace ozm::survival
