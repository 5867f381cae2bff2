#pragma once

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace ozm::survival {

/// Finds the place of a value in a list of codes, in time that grows with the logarithm of their number.
class CodeIndex {
public:
    /// At most 32767 codes; an unset one matches no value.
    explicit CodeIndex(std::span<const double> codes);

    /// The place from 1 of the first code of the list that equals the value as codes do; 0 when none does.
    [[nodiscard]] std::int16_t Find(double value) const;

private:
    std::vector<std::pair<std::int64_t, std::int16_t>> codes_; ///< ordered pattern and place, ascending
};

} // namespace ozm::survival
