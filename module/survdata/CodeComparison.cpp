#include "module/survdata/CodeComparison.h"

#include <bit>
#include <cmath>
#include <cstdint>

namespace ozm::survival {

std::int64_t OrderedPattern(double x) {
    const auto pattern = std::bit_cast<std::uint64_t>(x);
    constexpr std::uint64_t signBit = std::uint64_t{1} << 63;
    return static_cast<std::int64_t>((pattern & signBit) != 0 ? signBit - pattern : pattern);
}

bool CodesEqual(double a, double b) {
    if (!std::isfinite(a) || !std::isfinite(b)) return false;
    const std::int64_t x = OrderedPattern(a);
    const std::int64_t y = OrderedPattern(b);
    // Finite patterns lie within +-2^63 * 0.9995..., but the difference of two may not fit: compare unsigned.
    const std::uint64_t distance = x > y ? static_cast<std::uint64_t>(x) - static_cast<std::uint64_t>(y)
                                         : static_cast<std::uint64_t>(y) - static_cast<std::uint64_t>(x);
    return distance <= static_cast<std::uint64_t>(equalCodesLieWithin);
}

bool GreaterThan(double a, double b) {
    return a > b && !CodesEqual(a, b);
}

} // namespace ozm::survival
