#pragma once

#include "module/lifetable/LifeTable.h"

#include <bitset>

namespace ozm::survival {

/// The median residual lifetimes of a life table: how long half of those live on who are alive at the start
/// of a closed interval.
struct MedianLives {
    IntervalColumn median{};
    IntervalColumn error{};            ///< standard error; NaN where it cannot be computed
    std::bitset<intervalSlots> beyond; ///< the median is only known to be longer: it lies beyond the table
};

/// Of a row with P alive, the time at which the cumulative proportion surviving falls to A = P/2, by linear
/// interpolation inside its interval; its standard error is P / (2 F sqrt(E)) with F the density there (Gehan
/// 1969). Where survival ends on A exactly, the interval in which it fell to A. Where it stays above A, the
/// distance to the last limit, marked, with error 0.
MedianLives ComputeMedianLives(const LifeTable& table);

} // namespace ozm::survival
