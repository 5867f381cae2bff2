#pragma once

#include "module/lifetable/DistributionFits.h"

#include <cstddef>
#include <string>

namespace ozm::survival {

/// A distribution's name: "Linear Hazard".
std::string DistributionName(Distribution family);

/// Why a fit is not adequate, "" where it is: "the hazard is negative at 12.5".
std::string WhyInadequate(const DistributionFits& fits, Distribution family, std::size_t weighting,
                          const LifeTable& table);

/// What stopped the fitting, one sentence, and what it means for the fits.
std::string DescribeStop(const DistributionFits& fits, const LifeTable& table);

} // namespace ozm::survival
