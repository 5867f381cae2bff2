#include "host/session/SessionMemory.h"

#include <algorithm>
#include <cstdlib>

namespace korvana {

bool SessionMemory::AllocMem(void*& memory, std::size_t size) {
    // Never null for an empty array: null means refused.
    memory = std::malloc(std::max<std::size_t>(size, 1));
    if (memory == nullptr) return false;
    ++outstanding_;
    return true;
}

void SessionMemory::FreeMem(void* memory) {
    if (memory == nullptr) return;
    std::free(memory);
    --outstanding_;
}

} // namespace korvana
