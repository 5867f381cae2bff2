#pragma once

#include <cstdint>

namespace ozm::survival {

/// How a reading pass or a computation ended. Every code that stands in the design keeps its number; the
/// analyses that have codes of their own add them here.
enum class Status : std::int16_t {
    Success = 0,
    NoMemory = 1, ///< the host refused an array; not a code of the design, which names a message instead
    Stopped = 4,  ///< by the user: no message
    TooManyCases = 5,
    TooFewUncensored = 7,
    TooFewValid = 10,
    NoUncensored = 11,
    // Life tables.
    NoIntervals = 201,
    NegativeEntering = 202,
    NobodyEnters = 203,
    NoWidth = 210,
};

} // namespace ozm::survival
