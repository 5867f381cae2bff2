#pragma once

#include "module/regression/estimation/DampedNewton.h"
#include "module/regression/timedependent/TimeDependentLikelihood.h"

#include <optional>
#include <span>

namespace ozm::survival {

/// A proportional hazards regression with covariates that may change with the time.
struct TimeDependentCox {
    const OrderedSample& sample; ///< its order, times and events
    TimeCovariates& covariates;
    std::span<double> room; ///< `RoomFor`, less, or nothing: it is then slower, with the same results
    EvaluationWatch watch;  ///< while a likelihood is computed; may be empty
    std::optional<ValueAt> missing{}; ///< after InvalidOperation: what has no value
    /// After NoLikelihood, where a predictor is beyond the bound: the covariate with the largest part in it.
    std::optional<ValueAt> beyond{};
};

/// The room in which all values are kept that several evaluations need; 0 where no covariate changes.
std::size_t RoomFor(const OrderedSample& sample, const TimeCovariates& covariates);

/// Estimates the coefficients, on the scale that the covariates have. `parameters` (start values, then
/// estimates) and `estimate` are as in `MaximiseByDampedNewton`.
EstimationStatus FitTimeDependentCox(TimeDependentCox& cox, const IterationLimits& limits,
                                     const IterationWatch& watch, std::span<double> parameters,
                                     NewtonEstimate& estimate);

} // namespace ozm::survival
