#include "host/data/DistinctTexts.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace korvana {

std::size_t DistinctTexts::numberOf(std::string_view text) {
    if (!texts_.empty() && text == texts_[last_]) return last_;
    if (slots_.size() < 2 * (texts_.size() + 1)) grow();
    const std::uint64_t full = std::hash<std::string_view>()(text);
    const auto hash = static_cast<std::uint32_t>(full ^ (full >> 32U));
    Slot& slot = slotFor(hash, text);
    if (slot.after == 0) {
        texts_.push_back(kept(text));
        slot = {hash, static_cast<std::uint32_t>(texts_.size())};
    }
    return last_ = slot.after - 1;
}

/// The slot of a text, or the free one that it gets.
DistinctTexts::Slot& DistinctTexts::slotFor(std::uint32_t hash, std::string_view text) {
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t at = hash & mask;; at = (at + 1) & mask) {
        Slot& slot = slots_[at];
        if (slot.after == 0 || (slot.hash == hash && texts_[slot.after - 1] == text)) return slot;
    }
}

std::string_view DistinctTexts::kept(std::string_view text) {
    auto* const room = static_cast<char*>(characters_.allocate(text.size() + 1, 1));
    std::copy(text.begin(), text.end(), room);
    return {room, text.size()};
}

void DistinctTexts::grow() {
    std::vector<Slot> slots(std::max<std::size_t>(64, 2 * slots_.size()), Slot{0, 0});
    const std::size_t mask = slots.size() - 1;
    for (const Slot& slot : slots_) {
        if (slot.after == 0) continue;
        std::size_t at = slot.hash & mask;
        while (slots[at].after != 0)
            at = (at + 1) & mask;
        slots[at] = slot;
    }
    slots_ = std::move(slots);
}

} // namespace korvana
