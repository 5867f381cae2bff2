#include "tests/support/FailingNew.h"

#include <cstdlib>
#include <new>

thread_local long ozm::test::failingNew = 0;
std::atomic<long> ozm::test::failingNewOfAll = 0;

namespace {

bool fails() {
    using ozm::test::failingNew, ozm::test::failingNewOfAll;
    return (failingNew > 0 && --failingNew == 0) || (failingNewOfAll > 0 && --failingNewOfAll == 0);
}

} // namespace

// NOLINTBEGIN: the purpose of this file is to replace the global operators.
void* operator new(std::size_t size) {
    if (fails()) throw std::bad_alloc();
    void* memory = std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}
// As the C++ runtime has it; sanitizers bring their own, whose memory is not for free().
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    try {
        return operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
// NOLINTEND
