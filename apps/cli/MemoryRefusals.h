#pragma once

#include "host/session/SessionObserver.h"

namespace korvana::cli {

/// Counts, while it lives, how often memory was refused to the program or to an analysis. An analysis reports
/// running out of memory in the same words as too many cases, or only as an output that could not be made.
/// An observer, since a part of a computation that begins has got over what was refused before: room for
/// values that can be computed again, say.
class MemoryRefusals final : public SessionObserver {
public:
    enum class Of { Process, Nobody };
    /// @param of  nobody: counts nothing, for a program whose handlers are not ours
    explicit MemoryRefusals(Of of = Of::Process);
    ~MemoryRefusals() override;
    MemoryRefusals(const MemoryRefusals&) = delete;
    MemoryRefusals& operator=(const MemoryRefusals&) = delete;

    /// Whether there were some since the last call.
    [[nodiscard]] bool more();
    void computationStarted(unsigned /*units*/) override { (void)more(); }

private:
    Of of_;
    void (*before_)();
    unsigned seen_;
};

} // namespace korvana::cli
