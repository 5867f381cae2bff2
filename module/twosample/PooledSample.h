#pragma once

#include <cstdint>
#include <span>

namespace ozm::survival {

/// One observation of the two groups.
struct PooledObservation {
    double time = 0.0;
    std::int16_t status = 0; ///< 1 uncensored (failure), 0 censored
    std::int16_t group = 0;  ///< 1 or 2

    [[nodiscard]] bool Failed() const { return status == 1; }
};

/// How many observations of each group failed and were censored.
struct GroupCounts {
    std::int16_t uncensored1 = 0; ///< a
    std::int16_t censored1 = 0;   ///< b
    std::int16_t uncensored2 = 0; ///< c
    std::int16_t censored2 = 0;   ///< d

    [[nodiscard]] int N1() const { return uncensored1 + censored1; }
    [[nodiscard]] int N2() const { return uncensored2 + censored2; }
    [[nodiscard]] int N() const { return N1() + N2(); }
    [[nodiscard]] int Uncensored() const { return uncensored1 + uncensored2; }
    [[nodiscard]] int Censored() const { return censored1 + censored2; }
};

/// The observations of both groups in the order that `SortPooled` gives, and their counts. Both groups have
/// observations.
struct PooledSample {
    std::span<const PooledObservation> observations;
    GroupCounts counts;
};

/// Sorts by time; at equal times the uncensored ones come before the censored ones, so that an observation
/// censored at a time of failure is still at risk there. What is left of a tie is sorted by group: the order,
/// and with it every digit of the tests, does not depend on the order of the data.
void SortPooled(std::span<PooledObservation> observations);

} // namespace ozm::survival
