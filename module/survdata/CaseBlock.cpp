#include "module/survdata/CaseBlock.h"

#include <algorithm>

namespace ozm::survival {

CaseBlock::CaseBlock(std::size_t variables) : values_(most * variables) {}

void CaseBlock::Fetch(CAnalysisSupport& host, std::int32_t first, std::int32_t last,
                      std::span<const int> variables) {
    size_ = std::min(most, static_cast<std::size_t>(last - first) + 1);
    host.cstarts(first, std::span{answers_}.first(size_), std::span{values_}.first(variables.size() * size_),
                 variables);
}

} // namespace ozm::survival
