#pragma once

#include <cstddef>

namespace korvana {

/// The size of a big page, where the system has them.
inline constexpr std::size_t bigPage = std::size_t{2} << 20;

/// Whether a block of memory is big enough to gain from big pages: it is then filled with fewer page faults,
/// and read and written with fewer misses in the tables of addresses.
constexpr bool isForBigPages(std::size_t bytes) {
    return bytes >= 2 * bigPage;
}

/// Asks for big pages for the part of a block that they can cover. A block works without them too.
void askForBigPages(void* memory, std::size_t bytes) noexcept;

} // namespace korvana
