#pragma once

namespace korvana {

/// Holds the places of standard input, output and error where the caller closed them: otherwise the next
/// files to be opened get them, messages end up in results, and what is made in a process of its own is lost.
/// Reading and writing there fails as before. Before anything is opened; needs no library that is ready.
void holdStandardFiles() noexcept;

} // namespace korvana
