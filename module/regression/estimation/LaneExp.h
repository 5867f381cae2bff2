#pragma once

#include "module/regression/estimation/Lanes.h"

#include <cstddef>

namespace ozm::survival {

/// Replaces several numbers of magnitude up to 700 by their exponentials, to less than one unit in the last
/// place; larger ones, and what is no number, by anything. The same bits on every machine and in any number
/// of lanes, which the mathematical library does not promise.
///
/// x = k ln 2 + r with |r| <= ln 2 / 2; e^r = 1 + r + r^2 q(r), where q interpolates (e^r - 1 - r)/r^2 at ten
/// Chebyshev nodes, to 1.6e-17 of e^r.
template <std::size_t Lanes>
[[gnu::always_inline]] inline void Exponentiate(Lane<Lanes>& x) {
    constexpr double perLn2 = 0x1.71547652b82fep+0;
    // ln 2 in two parts, the first with so few digits that its products by k are exact.
    constexpr double ln2High = 0x1.62e42p-1;
    constexpr double ln2Low = 0x1.fdf473de6af28p-22;
    constexpr double toInteger = 0x1.8p52; // added, it leaves no room for digits behind the point
    constexpr double q[] = {0x1.0000000000001p-1,  0x1.5555555555556p-3,  0x1.5555555553d68p-5,
                            0x1.11111111109b5p-7,  0x1.6c16c17889ef1p-10, 0x1.a01a01a7c2efep-13,
                            0x1.a019b9149a41cp-16, 0x1.71de0db2f6b19p-19, 0x1.28917c89a43a7p-22,
                            0x1.af389ecfc4b9cp-26};
    const Lane<Lanes> shifted = x * perLn2 + toInteger;
    const Lane<Lanes> k = shifted - toInteger;
    const Lane<Lanes> r = (x - k * ln2High) - k * ln2Low;
    const Lane<Lanes> r2 = r * r;
    const Lane<Lanes> r4 = r2 * r2;
    const Lane<Lanes> low = (q[0] + q[1] * r) + r2 * (q[2] + q[3] * r);
    const Lane<Lanes> high = (q[4] + q[5] * r) + r2 * (q[6] + q[7] * r) + r4 * (q[8] + q[9] * r);
    const Lane<Lanes> power = 1.0 + (r + r2 * (low + r4 * high));
    // k stands in the last bits of `shifted`: moved there, it is added to the exponent.
    const LaneBits<Lanes> scaled =
        __builtin_bit_cast(LaneBits<Lanes>, power) + (__builtin_bit_cast(LaneBits<Lanes>, shifted) << 52);
    x = __builtin_bit_cast(Lane<Lanes>, scaled);
}

} // namespace ozm::survival
