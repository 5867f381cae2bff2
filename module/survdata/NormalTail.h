#pragma once

namespace ozm::survival {

/// The upper tail of the standard normal distribution, P(Z > z) (Hill 1973, Applied Statistics 22:424-427,
/// algorithm AS 66, with its constants as published): to ten digits from -7 to 18.66, 0 above and 1 below.
/// NaN for NaN.
double NormalTailProbability(double z);

/// The two-sided probability of a statistic referred to the standard normal distribution, 2 P(Z > |z|): 1 at
/// 0, NaN for NaN.
double TwoSidedProbability(double z);

} // namespace ozm::survival
