#pragma once

#include <cstdint>
#include <span>

namespace ozm::survival {

/// One observation of several groups.
struct PooledObservation {
    double time = 0.0;
    std::int16_t status = 0; ///< 1 uncensored (failure), 0 censored
    std::int16_t group = 0;  ///< from 1

    [[nodiscard]] bool Failed() const { return status == 1; }
};

/// How many observations of a group failed and were censored.
struct GroupCount {
    std::int32_t uncensored = 0;
    std::int32_t censored = 0;

    [[nodiscard]] std::int32_t All() const { return uncensored + censored; }
};

/// The observations of all groups in the order that `SortPooled` gives, and the counts of each group.
struct PooledSample {
    std::span<const PooledObservation> observations;
    std::span<const GroupCount> groups;

    /// The counts of a group, from 1.
    [[nodiscard]] const GroupCount& Group(std::size_t group) const { return groups[group - 1]; }
    /// Those of all groups.
    [[nodiscard]] GroupCount Total() const { return TotalOf(groups); }
    static GroupCount TotalOf(std::span<const GroupCount> groups);
};

/// Sorts by time; at equal times the uncensored ones come before the censored ones, so that an observation
/// censored at a time of failure is still at risk there. Remaining ties are sorted by group: so the order,
/// and with it every digit of the tests, does not depend on the order of the data.
void SortPooled(std::span<PooledObservation> observations);

/// Whether one stands before the other in that order.
bool PooledBefore(const PooledObservation& one, const PooledObservation& other);

} // namespace ozm::survival
