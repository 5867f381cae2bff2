#pragma once

#include "module/groups/PooledSample.h"
#include "module/twosample/PooledFailures.h"

#include <span>

namespace ozm::survival {

/// Group 2 at one distinct failure time.
struct Group2AtRisk {
    int atRisk = 0;     ///< r2(j): observations of group 2 that last at least until t(j)
    double share = 0.0; ///< A(j) = r2(j) / n(j)
};

/// The Cox-Mantel statistic, as it is stored: in single precision.
struct CoxMantelStatistic {
    float information = 0.0F; ///< I, the hypergeometric variance of U
    float excess = 0.0F;      ///< U: failures of group 2 observed less expected
    float c = 0.0F;           ///< U / sqrt(I), referred to the standard normal distribution; 0 where I is 0
};

/// The Cox-Mantel test (Mantel 1966, Cancer Chemother. Rep. 50:163-170; Cox 1972, J. R. Statist. Soc. B
/// 34:187-220):
///
///   U = c - sum of d(j) A(j),   I = sum of d(j) (n(j) - d(j)) A(j) (1 - A(j)) / (n(j) - 1)   over n(j) > 1
///
/// C is positive when group 1 lives longer. `rows` has room for the distinct failure times.
CoxMantelStatistic CoxMantelTest(const PooledSample& sample, const PooledFailures& failures,
                                 std::span<Group2AtRisk> rows);

} // namespace ozm::survival
