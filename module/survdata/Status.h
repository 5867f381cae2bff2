#pragma once

#include <cstdint>

namespace ozm::survival {

/// How a reading pass ended, or a run that adds no statuses of its own. The numbers are those that users and
/// scripts know. An analysis with further outcomes has an enumeration for them: the same number means another
/// thing there.
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
