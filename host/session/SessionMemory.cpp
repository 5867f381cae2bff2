#include "host/session/SessionMemory.h"

#include "host/data/BigPages.h"

#include <new>

namespace korvana {

bool SessionMemory::AllocMem(void*& memory, std::size_t size) {
    // Not malloc: a program may have a handler for memory that is refused.
    memory = ::operator new(size, std::nothrow);
    if (memory == nullptr) return false;
    askForBigPages(memory, size);
    ++outstanding_;
    return true;
}

void SessionMemory::FreeMem(void* memory) {
    if (memory == nullptr) return;
    ::operator delete(memory);
    --outstanding_;
}

} // namespace korvana
