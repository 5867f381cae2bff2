#pragma once

#include "support/CAnalysisSupport.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace ozm::survival {

/// Why a case does not count, in the order in which it is examined.
enum class Fate : std::uint8_t {
    Valid,
    MissingCode,
    OtherCode,
    MissingGroup,
    OtherGroup,
    MissingTime,
    TooLarge,
    InvalidDate,
    NegativeTime,
};

/// Consecutive cases of a reading pass, fetched from the host at once: the values of each variable one after
/// another, so that a step of the examination is a loop over a column.
class CaseBlock {
public:
    /// Enough to make a call for each block cheap, and few enough to stay in the cache.
    static constexpr std::size_t most = 512;

    explicit CaseBlock(std::size_t variables);

    /// Fetches the cases from `first` on, at most as many as there are up to `last`; at least one.
    void Fetch(CAnalysisSupport& host, std::int32_t first, std::int32_t last, std::span<const int> variables);

    [[nodiscard]] std::size_t Size() const { return size_; }
    /// The host's answer for a case.
    [[nodiscard]] short Answer(std::size_t i) const { return answers_[i]; }
    /// The values of the variable at a place; undefined for cases that are not to be used.
    [[nodiscard]] std::span<const double> Column(std::size_t place) const {
        return std::span{values_}.subspan(place * size_, size_);
    }

    // What the examination finds out about each case.
    std::array<Fate, most> fate{};
    std::array<std::uint8_t, most> complete{}; ///< 1: it has the code of complete observations
    std::array<std::int16_t, most> group{};    ///< from 1, 0 without groups
    std::array<double, most> time{};           ///< of the valid ones

private:
    std::size_t size_ = 0;
    std::array<short, most> answers_{};
    std::vector<double> values_;
};

} // namespace ozm::survival
