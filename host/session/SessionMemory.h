#pragma once

#include "support/services/MemoryService.h"

#include <cstddef>

namespace korvana {

/// Memory from the heap, counted to detect what an analysis forgets to release.
class SessionMemory : public ozm::MemoryService {
public:
    bool AllocMem(void*& memory, std::size_t size) override;
    void FreeMem(void* memory) override;

    [[nodiscard]] std::size_t outstanding() const { return outstanding_; }

private:
    std::size_t outstanding_ = 0;
};

} // namespace korvana
