#pragma once

namespace ozm::survival {

/// How an output ended: made, failed with a message, or not made with nothing to say, as the user stopped it
/// or was told.
struct OutputResult {
    bool made = true;
    int message = 0; ///< number in the string table

    static OutputResult Failed(int message) { return {false, message}; }
    static OutputResult NotMade() { return {false, 0}; }
};

} // namespace ozm::survival
