#pragma once

#include <cstddef>

namespace ozm {

/// Work and result arrays.
class MemoryService {
public:
    virtual ~MemoryService() = default;

    /// Requests `size` bytes, aligned for any scalar, not initialised. True when granted; else `memory` is
    /// null.
    virtual bool AllocMem(void*& memory, std::size_t size) = 0;
    /// Releases what `AllocMem` gave; null is ignored.
    virtual void FreeMem(void* memory) = 0;
};

} // namespace ozm
