#pragma once

namespace ozm::survival {

/// The outcome of an output: made, failed with a message, or not made without one (the user stopped it, or
/// was already told).
struct OutputResult {
    bool made = true;
    int message = 0; ///< number in the string table

    static OutputResult Failed(int message) { return {false, message}; }
    static OutputResult NotMade() { return {false, 0}; }
};

} // namespace ozm::survival
