#pragma once

namespace ozm::survival {

/// The largest magnitude of a predictor that there is a likelihood for, when covariates may change.
inline constexpr double largestTimePredictor = 75.0;

/// The step of a coefficient that moves no predictor by more than rounding, by the largest magnitude of its
/// covariate.
constexpr double NegligibleStepOf(double largest) {
    return largest > 0.0 ? 1e-12 / largest : 0.0;
}

} // namespace ozm::survival
