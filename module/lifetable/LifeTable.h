#pragma once

#include "module/lifetable/Intervals.h"
#include "module/survdata/Status.h"

namespace ozm::survival {

/// An actuarial life table (Berkson & Gage 1950; Cutler & Ederer 1958, J. Chronic Diseases 8:699-712), one
/// entry per row i = 0..rows-1. The last row is the open interval.
struct LifeTable {
    int rows = 0;
    IntervalColumn lower{};
    IntervalColumn entering{};            ///< N: alive at the start of the interval
    IntervalColumn withdrawn{};           ///< W: censored in it
    IntervalColumn exposed{};             ///< E = N - W/2: exposed to risk
    IntervalColumn dying{};               ///< D
    IntervalColumn proportionDead{};      ///< Q = D/E
    IntervalColumn proportionSurviving{}; ///< S = 1 - Q
    IntervalColumn cumulativeSurviving{}; ///< P: surviving to the start of the interval, 1 in the first
};

/// Whether proportions of 0 and 1 are corrected: an interval without a death is given half a death
/// (Q = 0.5/E), one in which all exposed die half a survivor (Q = (E - 0.5)/E).
enum class Correction : bool { Off, On };

/// Computes the table from its counts. It ends with the row after the last one that somebody enters: a row
/// with nobody in it has Q = 0 and closes the cumulative proportions. Answers NoIntervals (no interval, or
/// nobody enters the first), NegativeEntering (more left than entered), NobodyEnters, NoWidth (a lower limit
/// that is not above the one before), else Success; `table` is meaningful after Success only.
Status ComputeLifeTable(const IntervalCounts& counts, Correction correction, LifeTable& table);

} // namespace ozm::survival
