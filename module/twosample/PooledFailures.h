#pragma once

#include "module/groups/PooledSample.h"

#include <cstddef>
#include <span>

namespace ozm::survival {

/// One distinct failure time t(j) of the pooled sample.
struct FailureTime {
    double time = 0.0;
    int atRisk = 0;        ///< n(j): observations that last at least until t(j)
    int failures = 0;      ///< d(j)
    double hazard = 0.0;   ///< q(j) = d(j) / n(j)
    double survival = 1.0; ///< S(j), the Kaplan-Meier estimate just before t(j)
};

/// The distinct failure times of a pooled sample, ascending.
struct PooledFailures {
    std::span<const FailureTime> times;
    double survivalAfter = 1.0; ///< S(m+1), just after the last of them
};

/// Fills `room`, which holds as many entries as the sample has uncensored observations, and returns the part
/// in use. n(1) = N less the censored observations before the first failure; n(j+1) = n(j) - d(j) - c(j) with
/// c(j) the observations censored from t(j) on and before t(j+1); S(1) = 1, S(j+1) = (1 - q(j)) S(j).
PooledFailures TabulateFailures(const PooledSample& sample, std::span<FailureTime> room);

/// Gives each observation of the sample, in its order, a score that depends on its failure time only:
/// `failed(j)` for the d(j) failures at t(j), `censored(j)` for those censored from t(j) on and before the
/// next failure time, 0 for those censored before the first. j counts from 0 and is asked for in ascending
/// order.
template <class OfFailure, class OfCensored>
void ScoreByFailureTime(const PooledSample& sample, const PooledFailures& failures, std::span<double> scores,
                        OfFailure failed, OfCensored censored) {
    std::size_t next = 0; // failure times that have been reached
    for (std::size_t i = 0; i < sample.observations.size(); ++i) {
        const PooledObservation& o = sample.observations[i];
        if (o.Failed()) {
            if (next == 0 || o.time > failures.times[next - 1].time) ++next;
            scores[i] = failed(next - 1);
        } else {
            scores[i] = next == 0 ? 0.0 : censored(next - 1);
        }
    }
}

} // namespace ozm::survival
