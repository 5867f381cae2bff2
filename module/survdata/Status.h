#pragma once

#include <cstdint>

namespace ozm::survival {

/// How a reading pass ended, or a run without statuses of its own. Users and scripts know the numbers. An
/// analysis with further outcomes has its own enumeration, in which the same number means something else.
enum class Status : std::int16_t {
    Success = 0,
    NoMemory = -1, ///< the host refused an array; has a message but no number
    Stopped = 4,   ///< by the user: no message
    TooManyCases = 5,
    TooFewUncensored = 7,
    TooFewValid = 10,
    NoUncensored = 11,
};

} // namespace ozm::survival
