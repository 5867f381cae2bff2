#pragma once

#include <cstdint>

namespace ozm::survival {

/// What the dialogs of the regression analysis edit.
struct RegressionSettings {
    std::int16_t modelKind = 1; ///< 1 for the regression models, 5 with time-dependent covariates
    std::int16_t timeDependentCovariates = 0; ///< 4 with time-dependent covariates
    double convergenceCriterion = 0.0001;
    std::int16_t maximumIterations = 50;
    bool differentBaselines = true;   ///< equal coefficients, different baseline h0 (stratified analysis)
    bool nonDefaultEstimation = true; ///< non-default number of iterations, start values, etc.
};

/// Everything of the analysis that lives from its specification dialog to its results.
struct RegressionState {
    RegressionSettings settings;
};

} // namespace ozm::survival
