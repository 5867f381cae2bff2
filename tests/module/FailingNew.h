#pragma once

namespace ozm::test {

/// The n-th operator new from now on throws std::bad_alloc; 0: none. Counts down, so the rest shows whether
/// it happened.
extern thread_local long failingNew;

} // namespace ozm::test
