#pragma once

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

namespace ozm {

/// Codes this many units in the last place apart are equal.
inline constexpr std::int64_t equalCodesLieWithin = 15;

/// The bit pattern of a finite number on one ordered integer scale: neighbouring doubles differ by 1, and -0
/// and 0 share a place.
inline std::int64_t OrderedPattern(double x) {
    const auto pattern = std::bit_cast<std::uint64_t>(x);
    constexpr std::uint64_t signBit = std::uint64_t{1} << 63;
    return static_cast<std::int64_t>((pattern & signBit) != 0 ? signBit - pattern : pattern);
}

/// Whether two doubles are equal as codes: both finite and at most 15 units in the last place apart. An unset
/// code equals nothing, itself included.
inline bool CodesEqual(double a, double b) {
    if (!std::isfinite(a) || !std::isfinite(b)) return false;
    const std::int64_t x = OrderedPattern(a);
    const std::int64_t y = OrderedPattern(b);
    // Finite patterns lie within +-2^63 * 0.9995..., but the difference of two may not fit: compare unsigned.
    const std::uint64_t distance = x > y ? static_cast<std::uint64_t>(x) - static_cast<std::uint64_t>(y)
                                         : static_cast<std::uint64_t>(y) - static_cast<std::uint64_t>(x);
    return distance <= static_cast<std::uint64_t>(equalCodesLieWithin);
}

/// The numbers that equal a code, formed once for many comparisons: `Contains(x)` is `CodesEqual(x, code)`.
class CodeRange {
public:
    /// That of no code: empty.
    constexpr CodeRange() = default;
    explicit CodeRange(double code) {
        if (!std::isfinite(code)) return;
        const std::int64_t place = OrderedPattern(code);
        const std::int64_t last = OrderedPattern(std::numeric_limits<double>::max());
        least_ = AtPlace(std::max(place - equalCodesLieWithin, -last));
        greatest_ = AtPlace(std::min(place + equalCodesLieWithin, last));
    }

    /// Without a branch: codes of cases are as good as random.
    [[nodiscard]] bool Contains(double x) const {
        return (static_cast<unsigned>(x >= least_) & static_cast<unsigned>(x <= greatest_)) != 0;
    }

private:
    static double AtPlace(std::int64_t place) {
        const double magnitude = std::bit_cast<double>(place < 0 ? -place : place);
        return place < 0 ? -magnitude : magnitude;
    }

    double least_ = std::numeric_limits<double>::infinity();
    double greatest_ = -std::numeric_limits<double>::infinity();
};

/// Whether a is greater than b by more than that tolerance.
inline bool GreaterThan(double a, double b) {
    return a > b && !CodesEqual(a, b);
}

} // namespace ozm
