#pragma once

namespace ozm::test {

/// The n-th operator new from now on throws std::bad_alloc; 0: none. Counts down, so that what is left tells
/// whether it came to that.
extern thread_local long failingNew;

} // namespace ozm::test
