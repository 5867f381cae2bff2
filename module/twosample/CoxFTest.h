#pragma once

#include "module/groups/PooledSample.h"

#include <span>

namespace ozm::survival {

/// Cox's F, as it is stored: in single precision.
struct CoxFStatistic {
    float scoreSum1 = 0.0F; ///< T1: the scores of group 1 added up
    float scoreSum2 = 0.0F; ///< T2
    float f = 0.0F;         ///< the greater mean T1/a, T2/c over the smaller; 0 when they are equal
    float numeratorDf = 0.0F;
    float denominatorDf = 0.0F;
};

/// Whether the test can be computed: at least four uncensored observations, and one in each group.
bool CoxFApplies(const PooledSample& sample);

/// Cox's F-test (Cox 1964, J. R. Statist. Soc. B 26:103-110): the k-th smallest of r uncensored times gets
/// the expected k-th order statistic of N unit exponentials,
///
///   e(k) = 1/N + 1/(N-1) + ... + 1/(N-k+1),
///
/// tied ones the mean of theirs; each censored observation gets e(r) + 1/(N-r), with e(r) as it was before
/// ties were averaged. The means over the uncensored observations of a group, T1/a and T2/c, relate as an F
/// variable with 2a and 2c degrees of freedom (2c and 2a when group 2 has the greater mean); means at most 15
/// units in the last place apart are equal. The group with the greater mean lives longer.
///
/// `CoxFApplies` holds; `scores` has room for the uncensored observations.
CoxFStatistic CoxFTest(const PooledSample& sample, std::span<double> scores);

} // namespace ozm::survival
