#pragma once

#include <cstdint>

namespace ozm::survival {

/// Codes this many units in the last place apart are equal.
inline constexpr std::int64_t equalCodesLieWithin = 15;

/// The bit pattern of a finite number on one ordered integer scale: neighbouring doubles differ by 1, and -0
/// stands where 0 does.
std::int64_t OrderedPattern(double x);

/// Whether two doubles are equal as codes: both finite and at most 15 units in the last place apart. An unset
/// code equals nothing, itself included.
bool CodesEqual(double a, double b);

/// Whether a is greater than b by more than that tolerance.
bool GreaterThan(double a, double b);

} // namespace ozm::survival
