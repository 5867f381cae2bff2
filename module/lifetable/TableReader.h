#pragma once

#include "module/lifetable/Intervals.h"
#include "module/lifetable/LifeStatus.h"
#include "module/survdata/SharedSettings.h"
#include "support/CAnalysisSupport.h"

#include <cstdint>
#include <string>

namespace ozm::survival {

/// Counts of a pass over the rows of a table.
struct TableRows {
    static constexpr double mostWithdrawn = 99'999'999.0; ///< of a row, and of all rows together
    static constexpr double mostDying = 1e15;             ///< of a row

    std::int32_t selected = 0;
    std::int32_t taken = 0;
    // Why rows were left out: each counts once, under the first reason that holds, in this order.
    std::int32_t noLower = 0;
    std::int32_t noWithdrawn = 0;
    std::int32_t badWithdrawn = 0; ///< negative or above `mostWithdrawn`
    std::int32_t noDying = 0;
    std::int32_t badDying = 0; ///< negative or above `mostDying`

    [[nodiscard]] std::int32_t LeftOut() const { return selected - taken; }
};

/// Reads a life table given as data: one selected case per interval with its lower limit and the numbers
/// withdrawn and dying, by the lists of these variables. Rows come out in ascending order of the limits;
/// `counts.entering` is the number of all that are withdrawn or die. Returns Success, Stopped,
/// TooManyIntervals (a row after the 30th), TooManyObservations (the numbers withdrawn add up to more than
/// 99,999,999) or TooFewIntervals; `counts` then holds what was read before. Case weights have no effect.
LifeStatus ReadTable(CAnalysisSupport& host, SharedSettings& shared, IntervalCounts& counts, TableRows& rows);

/// The number entering the first interval where nobody gave another: the number of all that are withdrawn or
/// die, rounded up to a whole number within the range of the setting.
double EnteringFromData(const IntervalCounts& counts);

/// "2 without a value of 'lower', 1 with a value of 'dying' outside 0 to 1e15"; empty when all were taken.
std::string DescribeRowsLeftOut(CAnalysisSupport& host, const SharedSettings& shared, const TableRows& rows);

} // namespace ozm::survival
