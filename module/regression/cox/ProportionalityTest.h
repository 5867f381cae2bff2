#pragma once

#include "module/regression/cox/CoxResiduals.h"
#include "module/regression/estimation/ModelTests.h"

#include <span>
#include <vector>

namespace ozm::survival {

/// Whether hazards are proportional: whether coefficients change with the rank of the time.
struct ProportionalityTest {
    std::vector<double> correlation;            ///< of scaled residuals with the rank, by covariate
    std::vector<ChiSquareStatistic> covariates; ///< each with one degree of freedom
    ChiSquareStatistic overall;
};

/// The mid-ranks, from 1, of the times of death among them, over all strata; in the order of the residuals.
std::vector<double> RanksOfDeaths(const OrderedSample& sample, const SchoenfeldResiduals& residuals);

/// The test of Grambsch & Therneau (1994, Biometrika 81:515-526) from Schoenfeld residuals r and the
/// covariance V of the estimates. With g the centred mid-ranks of the D times of death, over all strata, and
/// u the sum of g r: of covariate k D (V u)_k^2 / (V_kk sum g^2), overall D u'V u / sum g^2. Where all deaths
/// are at one time nothing can change: 0, and p = 1.
ProportionalityTest TestProportionality(const OrderedSample& sample, const SchoenfeldResiduals& residuals,
                                        const SquareMatrix& covariance);

} // namespace ozm::survival
