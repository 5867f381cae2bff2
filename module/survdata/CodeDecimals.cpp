#include "module/survdata/CodeDecimals.h"

#include <algorithm>
#include <cmath>

namespace ozm::survival {

std::int16_t CodeDecimals(double code) {
    if (!std::isfinite(code)) return 0;
    auto v = static_cast<float>(code);
    if (v < 0.0F) v = std::max(10.0F, -10.0F * v);
    int digits = 1;
    if (v > 0.0F) {
        // The logarithm is taken in double and rounded: a single-precision library function may land on
        // either side of a whole number, and log10(0.001f) must give -3.
        const auto logarithm = static_cast<float>(std::log10(static_cast<double>(v)));
        digits = std::isfinite(logarithm) ? std::min(static_cast<int>(logarithm) + 1, 8) : 8;
    }
    return static_cast<std::int16_t>(std::max(8 - digits, 0));
}

} // namespace ozm::survival
