#pragma once

namespace korvana {

/// Occupies the descriptors of standard input, output and error if the caller closed them: otherwise the next
/// files opened would get them, messages would end up in results, and the work of other processes would be
/// lost. Reading and writing there fails as before. Call it before anything is opened; it needs no
/// initialised library.
void holdStandardFiles() noexcept;

} // namespace korvana
