#pragma once

#include "module/lifetable/Distributions.h"
#include "module/lifetable/LifeTable.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <limits>

namespace ozm::survival {

/// How intervals are weighted: 1 each; the reciprocal of the variance of the dependent value; persons exposed
/// times width (Gehan & Siddiqui 1973, J. Amer. Statist. Assoc. 68:848-856).
inline constexpr std::size_t weightings = 3;

/// Why a fit is left out of reports and curves.
enum class Inadequacy : std::uint8_t {
    None,
    NegativeLambda,   ///< of an exponential or Weibull distribution
    NegativeHazard,   ///< at a midpoint (linear hazard)
    SurvivalAboveOne, ///< at a limit or midpoint (linear hazard, Gompertz)
    NobodyLeft,       ///< survival falls to 0, or by more than all, in an interval
    WeibullHazard,    ///< a Gompertz fit: the Weibull fit of the same weighting has no hazard
};

/// One distribution fitted to a life table with one weighting.
struct DistributionFit {
    static constexpr double none = std::numeric_limits<double>::quiet_NaN();

    bool estimated = false; ///< whether there are parameters
    Inadequacy inadequacy = Inadequacy::None;
    double where = 0.0; ///< the time at which an inadequacy shows, where it has one
    DistributionParameters parameters{none, none};
    double lambdaVariance = none;
    double gammaVariance = none;
    double covariance = none; ///< of gamma and lambda
    // Curves; NaN where a value was not computed.
    IntervalColumn hazard{};      ///< at the midpoints
    IntervalColumn survival{};    ///< at the interval starts, 1 at the first
    IntervalColumn density{};     ///< at the midpoints, 0 in the open row
    IntervalColumn conditional{}; ///< survival of an interval by those who enter it, at most 1 - 1/(2E)
    double logLikelihood = none;  ///< 0 of an inadequate fit

    DistributionFit();
    /// Whether it has parameters, which are numbers, and nothing is out of range.
    [[nodiscard]] bool IsShown() const {
        return estimated && inadequacy == Inadequacy::None && !std::isnan(parameters.lambda);
    }
};

/// Why the fitting stopped before its end.
enum class FitStop : std::uint8_t {
    None,
    NoVariance,     ///< the observed hazard of an interval has no variance: nothing can be weighted
    LargeIntercept, ///< the intercept of a Weibull fit's regression is beyond 600
    LargeLambda,    ///< a Weibull lambda beyond 1e15
    LargeExponent,  ///< an exponent beyond 70
    GammaZero,      ///< of a Gompertz distribution
};

/// Twelve fits. Those that a stop prevented are empty, or have parameters and a part of their curves only.
struct DistributionFits {
    std::array<std::array<DistributionFit, weightings>, distributions> fits;
    FitStop stop = FitStop::None;
    // Where it stopped; a stop for want of variance has a time only.
    Distribution stoppedAt = Distribution::Exponential;
    std::size_t stoppedWeighting = 0;
    double stoppedTime = 0.0;

    [[nodiscard]] const DistributionFit& Of(Distribution family, std::size_t weighting) const {
        return fits[static_cast<std::size_t>(family)][weighting];
    }
    [[nodiscard]] DistributionFit& Of(Distribution family, std::size_t weighting) {
        return fits[static_cast<std::size_t>(family)][weighting];
    }
    [[nodiscard]] bool AnyInadequate() const;
    [[nodiscard]] bool AnyShown() const;
};

/// Fits all distributions with all weightings to the hazards of the closed intervals, by weighted least
/// squares (linear hazard: of the hazard on the midpoint; Gompertz: of its logarithm; Weibull: of its
/// logarithm on that of the midpoint). First all parameters, then all hazards, survival functions, densities,
/// conditional survival and log-likelihoods, each for all distributions in their order. A stop ends it there.
DistributionFits FitDistributions(const LifeTable& table);

/// The fitted hazards of one weighting at the midpoints, into those fits of `fits` that are not inadequate.
/// A linear hazard below 0 is set to 0 and makes its fit inadequate. Where a Weibull fit has lambda gamma <=
/// 0 or not a number, its hazard stays empty and the Gompertz fit of the same weighting becomes inadequate.
void FitHazards(const LifeTable& table, Distribution family, std::size_t weighting, DistributionFits& fits);

/// The likelihood-ratio test of a fit against the table itself.
struct GoodnessOfFit {
    double chiSquare = DistributionFit::none; ///< -2 (LL of the fit, in single precision, - LL of the data)
    int df = 0;                               ///< closed intervals - parameters
    double p = 1.0;                           ///< 1 where df < 1 or chi-square < 0
};
/// NaN and 1 where the fit has no likelihood.
GoodnessOfFit TestFit(const DistributionFit& fit, Distribution family, const LifeTable& table,
                      double logLikelihoodOfData);

} // namespace ozm::survival
