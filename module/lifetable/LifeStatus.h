#pragma once

#include <cstdint>

namespace ozm::survival {

/// How a run ended. The numbers are known to users; those of a reading pass, of `Status`, and of the
/// computation, of `LifeTableStatus`, are the same here.
enum class LifeStatus : std::int16_t {
    Success = 0,
    NoMemory = -1,
    Stopped = 4,
    TooManyCases = 5,
    TooFewUncensored = 7,
    TooFewValid = 10,
    ManyCensored = 11,
    Tabulation = 100, ///< fewer than three intervals are left after the observations were counted
    TooManyIntervals = 105,
    TooManyObservations = 106,
    NegativeDying = 107, ///< has a message; such rows are left out
    TooFewIntervals = 108,
    NoIntervals = 201,
    NegativeEntering = 202,
    NobodyEnters = 203,
    NoWidth = 210,
};

} // namespace ozm::survival
