#pragma once

#include <cstddef>
#include <cstdint>
#include <memory_resource>
#include <string_view>
#include <vector>

namespace korvana {

/// Texts, each kept once and numbered from 0 by first appearance; fewer than 2^32.
class DistinctTexts {
public:
    /// The number of a text, which becomes size() - 1 if it is new.
    std::size_t numberOf(std::string_view text);

    std::size_t size() const { return texts_.size(); }
    std::string_view operator[](std::size_t number) const { return texts_[number]; }

private:
    /// A place of the hash table.
    struct Slot {
        std::uint32_t hash;
        std::uint32_t after; ///< the number of the text and 1; 0: free
    };

    Slot& slotFor(std::uint32_t hash, std::string_view text);
    std::string_view kept(std::string_view text);
    void grow();

    std::pmr::monotonic_buffer_resource characters_; ///< of the texts: without an allocation for each
    std::vector<std::string_view> texts_;
    std::vector<Slot> slots_; ///< a power of two, at least twice as many as texts
    std::size_t last_ = 0;    ///< the number that was asked for last
};

} // namespace korvana
