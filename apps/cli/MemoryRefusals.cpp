#include "apps/cli/MemoryRefusals.h"

#include <atomic>
#include <new>
#include <utility>

namespace korvana::cli {
namespace {

std::atomic<unsigned> refusals{0};

void refused() {
    ++refusals;
    throw std::bad_alloc();
}

} // namespace

MemoryRefusals::MemoryRefusals() : before_(std::set_new_handler(refused)), seen_(refusals) {}

MemoryRefusals::~MemoryRefusals() {
    std::set_new_handler(before_);
}

bool MemoryRefusals::more() {
    const unsigned now = refusals;
    return std::exchange(seen_, now) != now;
}

} // namespace korvana::cli
