#pragma once

#include "module/groups/PooledSample.h"

#include <cstdint>
#include <vector>

namespace ozm::survival {

/// The product-limit estimate of one group; the spans of `ComputeProductLimit`.
struct GroupEstimate {
    std::vector<double> uncensored; ///< times, ascending
    std::vector<double> censored;
    std::vector<double> survival; ///< after each uncensored observation
    std::vector<double> standardError;
};

/// One for each group.
std::vector<GroupEstimate> EstimateGroups(const PooledSample& sample);

/// A median survival time with its limits; NaN for what the estimate or its limits do not reach.
struct MedianSurvival {
    double median;
    double lower;
    double upper;
};

/// The median as textbooks and most programs define it: the first time at which the estimate is at or below
/// one half, or the middle of the flat piece on which it is one half exactly. Its limits are the times at
/// which the log-minus-log limits of the estimate reach one half by the same rule (Brookmeyer & Crowley 1982,
/// Biometrics 38:29-41). `z` as for `LogMinusLogLimits`.
MedianSurvival MedianOf(const GroupEstimate& estimate, double z);

} // namespace ozm::survival
