#pragma once

#include <cstdint>

namespace ozm::survival {

/// What `FTailProbability` returns when there is no probability.
inline constexpr float noProbability = -1.0F;

/// Denominator degrees of freedom above this one count as this one: the tail is then a chi-square's for
/// practical purposes.
inline constexpr float mostDenominatorDf = 32000.0F;

/// The upper tail of the F distribution, P(X > f), to single precision from 1 down to 1e-30. Degrees of
/// freedom are rounded to whole numbers, halves up; the denominator's count as at most `mostDenominatorDf`. 1
/// at f = 0, 0 at an infinite f. `noProbability` for a negative f, for degrees of freedom below 1, and where
/// any of the three is NaN.
float FTailProbability(float f, float numeratorDf, float denominatorDf);

/// The upper tail of the chi-square distribution, taken as the F tail of chiSquare / df with `df` and
/// `mostDenominatorDf` degrees of freedom. 1 where there is no probability: df below 1, a value that is
/// negative or NaN.
float ChiSquareTailProbability(float chiSquare, std::int16_t df);

} // namespace ozm::survival
