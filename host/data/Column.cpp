#include "host/data/Column.h"

#include <algorithm>
#include <limits>
#include <new>

#include <sys/mman.h>

namespace korvana {

Column::Column(std::size_t cells) {
    // A big column asks for big pages: fewer faults while it is filled. It need not get them.
    constexpr std::size_t bigPage = std::size_t{2} << 20;
    if (cells > std::numeric_limits<std::size_t>::max() / sizeof(double) - bigPage) throw std::bad_alloc();
    std::size_t bytes = std::max<std::size_t>(cells, 1) * sizeof(double);
    const bool big = bytes >= 2 * bigPage;
    const std::size_t alignment = big ? bigPage : 64;
    bytes = (bytes + alignment - 1) / alignment * alignment;
    void* memory = std::aligned_alloc(alignment, bytes);
    if (memory == nullptr) throw std::bad_alloc();
    if (big) madvise(memory, bytes, MADV_HUGEPAGE);
    cells_.reset(static_cast<double*>(memory));
}

} // namespace korvana
