#pragma once

#include "module/lifetable/Intervals.h"

#include <cstdint>

namespace ozm::survival {

/// An actuarial life table (Berkson & Gage 1950; Cutler & Ederer 1958, J. Chronic Diseases 8:699-712; Gehan
/// 1969, J. Chronic Diseases 21:629-644), one entry per row i = 0..rows-1. The last row is the open interval,
/// of which the columns of the second group hold 0.
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
    IntervalColumn survivingError{};      ///< standard error of P (Greenwood 1926)

    IntervalColumn width{};          ///< h: to the next lower limit
    IntervalColumn midpoint{};       ///< lower + h/2
    IntervalColumn density{};        ///< F = (P - next P) / h: the probability of dying per unit of time
    IntervalColumn hazard{};         ///< H = 2Q / ((1 + S) h): deaths per person and unit of time
    IntervalColumn hazardVariance{}; ///< (1 - (h H/2)^2) H^2 / (E Q), 0 where nobody died
    IntervalColumn densityError{};
    IntervalColumn hazardError{};

    [[nodiscard]] std::size_t Rows() const { return static_cast<std::size_t>(rows); }
    /// The number of closed intervals.
    [[nodiscard]] std::size_t Closed() const { return Rows() - 1; }
};

/// How the computation of a life table ended. The numbers are known to users.
enum class LifeTableStatus : std::int16_t {
    Success = 0,
    NoIntervals = 201,
    NegativeEntering = 202,
    NobodyEnters = 203,
    NoWidth = 210,
};

/// Whether proportions of 0 and 1 are corrected: an interval without a death (Q = 0) is given half a death,
/// Q = 0.5/E, and one in which all exposed die (Q = 1) half a survivor, Q = (E - 0.5)/E.
enum class Correction : bool { Off, On };

/// Computes the table from its counts, for the first `intervalSlots` intervals at most. The table ends with
/// the row after the last one that somebody enters, if there is such an interval. A last row with nobody
/// exposed has Q = 0, corrected or not. Returns NoIntervals (no interval, or nobody enters the first), else
/// NegativeEntering (more leave than entered), else NoWidth (a lower limit that is not above the one before,
/// even beyond the table's end), else Success; `table` is meaningful after Success only. NobodyEnters does
/// not arise: somebody enters the first.
LifeTableStatus ComputeLifeTable(const IntervalCounts& counts, Correction correction, LifeTable& table);

/// The log-likelihood of the counts under the table's own proportions: the sum over the closed intervals of
/// D ln(1 - x) + (E - D) ln(x) with x = next P / P, without the terms whose logarithm does not exist.
double LogLikelihood(const LifeTable& table);

} // namespace ozm::survival
