#include "module/survdata/CodeIndex.h"

#include "support/CodeComparison.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

namespace ozm::survival {

CodeIndex::CodeIndex(std::span<const double> codes) {
    codes_.reserve(codes.size());
    for (std::size_t i = 0; i < codes.size(); ++i)
        if (std::isfinite(codes[i]))
            codes_.emplace_back(OrderedPattern(codes[i]), static_cast<std::int16_t>(i + 1));
    std::sort(codes_.begin(), codes_.end());
}

std::int16_t CodeIndex::Find(double value) const {
    if (!std::isfinite(value)) return 0;
    // Patterns of finite numbers are further than this from the ends of their type.
    const std::int64_t pattern = OrderedPattern(value);
    auto next = std::lower_bound(codes_.begin(), codes_.end(),
                                 std::pair{pattern - equalCodesLieWithin, std::int16_t{0}});
    std::int16_t first = 0;
    for (; next != codes_.end() && next->first <= pattern + equalCodesLieWithin; ++next)
        if (first == 0 || next->second < first) first = next->second;
    return first;
}

} // namespace ozm::survival
