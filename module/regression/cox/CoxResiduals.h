#pragma once

#include "module/regression/cox/RiskSets.h"

#include <span>
#include <vector>

namespace ozm::survival {

/// Residuals of the cases, in the sample's order.
struct CoxResiduals {
    std::vector<double> martingale; ///< events less the estimated cumulative hazard at the time (Barlow &
                                    ///< Prentice 1988, Biometrika 75:65-74)
    std::vector<double> deviance; ///< sign(M) sqrt(-2 (M + d ln(d - M))) (Therneau, Grambsch & Fleming 1990,
                                  ///< Biometrika 77:147-160)
};
CoxResiduals ComputeCoxResiduals(const OrderedSample& sample, const RiskSets& sets);

/// Schoenfeld residuals: of each death its covariates less their mean over the risk set (Schoenfeld 1982,
/// Biometrika 69:239-241). One row per death, covariate by covariate, in the order of the sample.
struct SchoenfeldResiduals {
    std::size_t covariates = 0;
    std::vector<std::size_t> places; ///< of the deaths in the sample
    std::vector<double> values;      ///< row by row

    [[nodiscard]] std::size_t Deaths() const { return places.size(); }
    [[nodiscard]] std::span<double> Row(std::size_t death) {
        return std::span{values}.subspan(death * covariates, covariates);
    }
    [[nodiscard]] std::span<const double> Row(std::size_t death) const {
        return std::span{values}.subspan(death * covariates, covariates);
    }
};
SchoenfeldResiduals ComputeSchoenfeldResiduals(const OrderedSample& sample, const RiskSets& sets);

/// The same, scaled: D V r + b with D deaths, V the covariance of the estimates b (Grambsch & Therneau 1994,
/// Biometrika 81:515-526): around the coefficient as it would be at the time of the death.
SchoenfeldResiduals Scaled(const SchoenfeldResiduals& residuals, const SquareMatrix& covariance,
                           std::span<const double> estimates);

} // namespace ozm::survival
