#pragma once

namespace ozm::survival {

/// The standard normal quantile: z with P(Z <= z) = p, to about 16 digits (Wichura 1988, Applied Statistics
/// 37:477-484, algorithm AS 241, PPND16). -infinity at p = 0, +infinity at p = 1, NaN outside 0..1.
double NormalQuantile(double p);

/// The z of a two-sided confidence level in 0..1: NormalQuantile((1 + level) / 2).
double ConfidenceZ(double level);

} // namespace ozm::survival
