#pragma once

#include <atomic>

namespace ozm::test {

/// The n-th operator new from now on throws std::bad_alloc; 0: none. Counts down, so the rest shows whether
/// it happened.
extern thread_local long failingNew;

/// The same, counted over all threads.
extern std::atomic<long> failingNewOfAll;

} // namespace ozm::test
