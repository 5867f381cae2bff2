#pragma once

namespace korvana::cli {

/// Counts, while it lives, how often memory was refused to the program or to an analysis. An analysis reports
/// running out of memory in the same words as too many cases, or only as an output that could not be made.
class MemoryRefusals {
public:
    MemoryRefusals();
    ~MemoryRefusals();
    MemoryRefusals(const MemoryRefusals&) = delete;
    MemoryRefusals& operator=(const MemoryRefusals&) = delete;

    /// Whether there were some since the last call.
    [[nodiscard]] bool more();

private:
    void (*before_)();
    unsigned seen_;
};

} // namespace korvana::cli
