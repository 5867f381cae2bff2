#include "host/data/BigPages.h"

#include <memory>

#include <sys/mman.h>

namespace korvana {

void askForBigPages(void* memory, std::size_t bytes) noexcept {
    if (!isForBigPages(bytes) || std::align(bigPage, bigPage, memory, bytes) == nullptr) return;
    madvise(memory, bytes / bigPage * bigPage, MADV_HUGEPAGE);
}

} // namespace korvana
