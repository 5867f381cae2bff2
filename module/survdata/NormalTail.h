#pragma once

namespace ozm::survival {

/// The upper tail of the standard normal distribution, P(Z > z) (Hill 1973, Applied Statistics 22:424-427,
/// algorithm AS 66, with its constants as published): nine digits or more, 0 above 18.66 and 1 below -7. NaN
/// for NaN.
double NormalTailProbability(double z);

/// The two-sided probability of a statistic referred to the standard normal distribution, 2 P(Z > |z|); 1 at
/// 0.
double TwoSidedProbability(double z);

} // namespace ozm::survival
