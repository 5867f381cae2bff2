#pragma once

#include "module/regression/cox/RiskSets.h"

#include <cstddef>
#include <span>
#include <vector>

namespace ozm::survival {

/// A point of an estimated survival function.
struct CoxSurvivalPoint {
    double time = 0.0;
    std::size_t events = 0;
    std::size_t atRisk = 0;
    double hazard = 0.0;           ///< the increase of the cumulative hazard at the time
    double cumulativeHazard = 0.0; ///< H
    double cumulativeError = 0.0;  ///< standard error of H
    double survival = 1.0;         ///< exp(-H)
    double lower = 1.0;            ///< limits of S by those of ln H
    double upper = 1.0;
};

/// The survival function of a stratum for somebody with covariates x: H(t) is exp(x'b) times Breslow's
/// cumulative hazard. With q the sum of (x - S1/S0) d/S0 over the deaths up to t, and V the covariance of the
/// estimates b (Tsiatis 1981, Annals of Statistics 9:93-108; Link 1984, Biometrics 40:601-610),
///
///   Var H(t) = exp(2 x'b) (sum of d/S0^2 + q'Vq)
///
/// One point per time of death, ascending. `covariates` and the means over risk sets are on one scale, and
/// `predictor` is x'b less the constant of the risk sets. `z` is the normal quantile of the confidence level.
std::vector<CoxSurvivalPoint> CoxSurvival(const RiskSets& sets, std::size_t block,
                                          std::span<const double> covariates, double predictor,
                                          const SquareMatrix& covariance, double z);

} // namespace ozm::survival
