#pragma once

#include "module/lifetable/DistributionFits.h"

#include <cstddef>
#include <vector>

namespace ozm::survival {

/// A fit's place among all twelve.
struct RankedFit {
    Distribution family = Distribution::Exponential;
    std::size_t weighting = 0;
    bool adequate = false; ///< with parameters, a likelihood, and nothing out of range
    GoodnessOfFit test;
    double akaike = DistributionFit::none; ///< 2 k - 2 LL with k parameters (Akaike 1974)
};

/// All fits, the adequate ones by Akaike's criterion, smallest first, then the others in their order.
std::vector<RankedFit> RankFits(const DistributionFits& fits, const LifeTable& table,
                                double logLikelihoodOfData);

} // namespace ozm::survival
