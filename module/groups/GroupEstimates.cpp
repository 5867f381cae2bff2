#include "module/groups/GroupEstimates.h"

#include "module/kaplan/ConfidenceLimits.h"
#include "module/kaplan/ProductLimit.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

namespace ozm::survival {
namespace {

constexpr double none = std::numeric_limits<double>::quiet_NaN();
constexpr double half = 0.5;
/// A product of fractions may miss one half by its rounding.
constexpr double tolerance = 1e-9;

/// The last time of a curve: what is censored then belongs to it.
double EndOf(const GroupEstimate& estimate) {
    double end = estimate.uncensored.back();
    for (const double time : estimate.censored)
        end = std::max(end, time);
    return end;
}

/// The first time at which a curve is at or below one half, or the middle of a piece where it is one half.
/// curveAt(i) may be NaN where the curve has no value.
template <class CurveAt>
double TimeOfHalf(const GroupEstimate& estimate, CurveAt curveAt) {
    const std::vector<double>& times = estimate.uncensored;
    for (std::size_t i = 0; i < times.size(); ++i) {
        if (i + 1 < times.size() && times[i + 1] == times[i])
            continue; // the last of a tied run has the estimate
        const double y = curveAt(i);
        if (!(y <= half + tolerance)) continue;
        if (y < half - tolerance) return times[i];
        const double end = i + 1 < times.size() ? times[i + 1] : EndOf(estimate);
        return times[i] + (end - times[i]) / 2.0;
    }
    return none;
}

} // namespace

std::vector<GroupEstimate> EstimateGroups(const PooledSample& sample) {
    std::vector<GroupEstimate> estimates(sample.groups.size());
    for (const PooledObservation& o : sample.observations) {
        GroupEstimate& estimate = estimates[static_cast<std::size_t>(o.group) - 1];
        (o.Failed() ? estimate.uncensored : estimate.censored).push_back(o.time);
    }
    std::vector<std::int32_t> ranks;
    for (GroupEstimate& estimate : estimates) {
        const std::size_t failures = estimate.uncensored.size();
        ranks.resize(failures);
        estimate.survival.resize(failures);
        estimate.standardError.resize(failures);
        ComputeProductLimit(estimate.uncensored, estimate.censored, ranks, estimate.survival,
                            estimate.standardError);
    }
    return estimates;
}

MedianSurvival MedianOf(const GroupEstimate& estimate, double z) {
    // Where the estimate is 0 it has no limits; they hold up to there.
    const auto limit = [&](double zOfLimit) {
        return TimeOfHalf(estimate, [&](std::size_t i) {
            return LogMinusLogLimit(estimate.survival[i], estimate.standardError[i], zOfLimit);
        });
    };
    return {.median = TimeOfHalf(estimate, [&](std::size_t i) { return estimate.survival[i]; }),
            .lower = limit(z),
            .upper = limit(-z)};
}

} // namespace ozm::survival
