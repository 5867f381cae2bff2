#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace ozm::survival {

/// Observations in the order of the partial likelihood: in blocks, one per stratum; within a block times
/// descending, and of equal times the censored ones first.
struct OrderedSample {
    std::size_t cases = 0;
    std::size_t covariates = 0;             ///< 1 to 40
    std::size_t stride = 0;                 ///< from a covariate's column to the next, at least `cases`
    std::span<const double> times;          ///< one per case
    std::span<const std::uint8_t> complete; ///< 1: the time is that of an event
    std::span<const double> x;              ///< covariates, column by column
    std::span<const std::int32_t> blocks;   ///< the number of cases of each block, in the order of the cases

    [[nodiscard]] const double* Column(std::size_t k) const { return x.data() + k * stride; }
};

} // namespace ozm::survival
