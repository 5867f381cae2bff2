#pragma once

#include "module/regression/data/RegressionSample.h"
#include "module/regression/estimation/DampedNewton.h"

#include <span>

namespace ozm::survival {

/// On the standardised scale; a millionth of a millionth of a predictor's usual size.
inline constexpr double negligibleCoxStep = 1e-12;

/// Fits the proportional hazards model to a sample in the order of the partial likelihood. The covariates are
/// standardised in place for the iteration, and restored afterwards, whatever its end: the watch sees the
/// standardised scale; `parameters` (start values, then estimates) and `estimate` have the scale of the data.
/// The gradient at the end, too, is that of the data's scale.
EstimationStatus FitCox(RegressionSample& sample, const IterationLimits& limits, const IterationWatch& watch,
                        std::span<double> parameters, NewtonEstimate& estimate);

} // namespace ozm::survival
