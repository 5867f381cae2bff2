#pragma once

#include "module/regression/estimation/DampedNewton.h"
#include "module/regression/parametric/CensoredCases.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace ozm::survival {

/// How the fit of an exponential model ended. The numbers are known to users.
enum class ExponentialStatus : std::int16_t {
    Success = 0,
    TooManyIterations = 1,
    Singular = 2,
    NoCases = 3,
    NoCovariates = 4, ///< before the first iteration
    Stopped = 4,      ///< in an iteration
    NotAFlag = 5,     ///< a case is neither complete nor censored
    NegativeTime = 6,
    NoEvents = 7,
    NoTime = 8,       ///< all times are 0
    TooFewEvents = 9, ///< for the number of parameters
    NotFinite = 10,   ///< the log-likelihood is beyond what can be computed
};

/// The exponential model for censored times: the mean time of a case with covariates x is exp(b0 + x'b), its
/// hazard exp(-(b0 + x'b)). Parameters are b, then the constant b0.
struct ExponentialFit {
    std::vector<double> parameters;
    std::vector<double> covariance; ///< packed, as in `PackedCholesky`; empty without estimates
    std::vector<double> gradient;   ///< of the log-likelihood by the parameters, when it was last computed
    double logLikelihood = 0.0;     ///< on the scale of the times, when it was last computed
    double nullLogLikelihood = 0.0; ///< with a constant alone
    int iterations = 0;             ///< 0: it ended before the first one
    std::size_t lost = 0; ///< Singular: the parameter, from 0, whose pivot was lost; else their number
};

/// A step that is not longer, of a coefficient times its covariate's standard deviation or of the constant,
/// is what rounding leaves of 0.
inline constexpr double negligibleExponentialStep = 1e-12;

/// Newton's method on the full log-likelihood, with full steps. With theta = -parameters, c = exp(theta0),
/// e = exp(x'theta), d events and E the sum of x over them:
///
///   L = theta0 d + theta'E - c sum t e
///
/// It starts from `start`, parameters as they are reported, or, where that is empty, from a common hazard of
/// all cases. It has converged when L has not fallen, and risen by at most `criterion` of the magnitude it
/// had, and the step of every parameter is less than `criterion` of it, or negligible; that step is not made.
/// L counts as 0 before the first iteration. `limits.most` iterations are made at most; an L that is not
/// finite ends them. The watch sees the parameters as they are reported.
ExponentialStatus FitExponential(const CensoredCases& cases, const IterationLimits& limits,
                                 const IterationWatch& watch, std::span<const double> start,
                                 ExponentialFit& fit);

} // namespace ozm::survival
