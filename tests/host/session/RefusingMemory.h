#pragma once

#include "host/session/SessionMemory.h"

namespace korvana::test {

/// Has no memory to give, until it is told otherwise.
struct RefusingMemory final : SessionMemory {
    bool AllocMem(void*& memory, std::size_t size) override {
        memory = nullptr;
        return !refuse && SessionMemory::AllocMem(memory, size);
    }
    bool refuse = true;
};

} // namespace korvana::test
