#pragma once

#include "module/regression/estimation/DampedNewton.h"
#include "module/regression/parametric/CensoredNormal.h"

#include <cstdint>
#include <optional>
#include <span>

namespace ozm::survival {

/// How the estimation ended. The numbers are known to users; those below 0 that a user is told nothing else
/// of are errors of the procedure.
enum class EmStatus : std::int16_t {
    Success = 0,
    TooManyIterations = -1,
    BoundsReversed = -2, ///< the upper bound of a confined case is not above its lower one
    TooFewUncensored = -4,
    Singular = -5,         ///< covariates of all cases, with the constant
    SingularStart = 6,     ///< of the cases that are not censored: they give no start values
    WrongCases = -7,       ///< none, or not a status for each, or an unknown one, or no upper bounds
    WrongParameters = -8,  ///< not as many as covariates and two, or too many
    WrongCovariates = -9,  ///< not a column for each
    WrongTolerances = -10, ///< not one for each parameter
    NotFinite = -11,       ///< a parameter is no number
    Stopped = -99,
};

/// When the iteration ends.
struct EmLimits {
    std::span<const double> tolerances; ///< absolute, one for each parameter
    int most = 50;                      ///< with 0 only the start values are made
};

/// The maximum likelihood estimates of a linear model from censored and confined normal data, by the EM
/// iteration of Wolynetz (1979, Applied Statistics 28:195-206, algorithm AS 139, with its correction of
/// 1981): with the means mu of the cases by the parameters before, the conditional expectation w of each
/// response (y itself where it is complete), mu + sigma h(z) with h = phi/Q where it is censored, b is the
/// least squares fit to w, and
///
///   sigma^2 = sum (w - mu)^2 / (complete cases + sum of h (h - z) over censored ones)
///
/// It has converged when no parameter, sigma included, changes by more than its tolerance. A confined case
/// whose bounds differ by at most 1e-5 of the lower one is complete. `parameters` (as in `CensoredNormal`)
/// holds start values where its sigma is above 0; else least squares make them, on the complete cases and the
/// midpoints of confined ones, with sigma^2 the mean square of their residuals. It holds the estimates
/// afterwards, also after a failure. The watch sees the number of the iteration, NaN for the log-likelihood,
/// and the parameters after it.
///
/// First it makes a model of the cases, which stands at the estimates afterwards, and is none where it ended
/// before.
EmStatus FitCensoredNormal(const CensoredCases& cases, const EmLimits& limits, const IterationWatch& watch,
                           std::span<double> parameters, int& iterations,
                           std::optional<CensoredNormal>& model);

} // namespace ozm::survival
