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

MemoryRefusals::MemoryRefusals(Of of)
    : of_(of), before_(of == Of::Process ? std::set_new_handler(refused) : nullptr), seen_(refusals) {}

MemoryRefusals::~MemoryRefusals() {
    if (of_ == Of::Process) std::set_new_handler(before_);
}

bool MemoryRefusals::more() {
    const unsigned now = refusals;
    return std::exchange(seen_, now) != now;
}

} // namespace korvana::cli
