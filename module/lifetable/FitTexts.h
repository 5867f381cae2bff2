#pragma once

#include "module/lifetable/DistributionFits.h"

#include <cstddef>
#include <string>
#include <vector>

namespace ozm::survival {

/// A distribution's name: "Linear Hazard".
std::string DistributionName(Distribution family);

/// "Weibull, weight 2".
std::string FitName(Distribution family, std::size_t weighting);

/// Why a fit is not adequate, "" where it is: "the hazard is negative at 12.5".
std::string WhyInadequate(const DistributionFits& fits, Distribution family, std::size_t weighting,
                          const LifeTable& table);

/// Adds a sentence for each fit of a distribution that is not adequate: "Weibull, weight 2: Lambda is
/// negative."
void AddReasons(std::vector<std::string>& sentences, const DistributionFits& fits, Distribution family,
                const LifeTable& table);

/// What stopped the fitting, one sentence, and what it means for the fits.
std::string DescribeStop(const DistributionFits& fits);

} // namespace ozm::survival
