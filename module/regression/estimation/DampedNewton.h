#pragma once

#include "module/regression/estimation/LikelihoodModel.h"

#include <functional>
#include <span>

namespace ozm::survival {

/// When the iteration ends.
struct IterationLimits {
    double criterion = 0.0001; ///< relative change of the log-likelihood and of every parameter
    int most = 50;             ///< one iteration more is made before it ends without convergence
    /// A step of a parameter that is not longer is what rounding leaves of 0, and counts as no change: a
    /// coefficient that is exactly 0 would never settle relative to its size. (Where scales differ, the model
    /// has one for each parameter.)
    double negligibleStep = 0.0;
};

/// What an estimation leaves.
struct NewtonEstimate {
    double logLikelihood = 0.0;
    double nullLogLikelihood = 0.0; ///< with all parameters 0
    double nullScore = 0.0; ///< there: U'I^-1 U of gradient U and information I; NaN where I is singular
    int iterations = 0;
    SquareMatrix covariance;    ///< by the information at the start of the last iteration
    ParameterVector gradient{}; ///< at the end
};

/// An iteration as it begins, and once more when it has converged: its number, log-likelihood, parameters.
/// Returns whether the user wants to stop.
using IterationWatch = std::function<bool(int, double, std::span<const double>)>;

/// Maximises a log-likelihood by Newton's method with halved steps. In each iteration the full step is tried,
/// and then always halved, up to seven times, until the log-likelihood is not below that of the iteration's
/// start: at most half a Newton step is kept. Seven halvings without success leave the parameters as they
/// were, which ends the iteration: in the first one with NoLikelihood, later as converged. Converged means
/// c < criterion and |step / parameter| < criterion for all parameters, where c is the change of the
/// log-likelihood divided by the log-likelihood (with its sign, unless it is 0), and a step that is
/// negligible counts as 0.
///
/// `parameters` holds start values, and estimates afterwards, also after a failure. `estimate` holds what was
/// found before a failure.
EstimationStatus MaximiseByDampedNewton(LikelihoodModel& model, const IterationLimits& limits,
                                        const IterationWatch& watch, std::span<double> parameters,
                                        NewtonEstimate& estimate);

} // namespace ozm::survival
