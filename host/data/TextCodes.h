#pragma once

#include "host/data/Variable.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace korvana {

/// A text of a column and the first row that has it.
struct SeenText {
    std::string text;
    std::int64_t row = 0;
};

/// The codes of the texts of a column. Truth values, if the column has nothing else, are the numbers 0 and 1
/// as everywhere, with the spelling that comes first as their label. All others are counted from 1: numbers
/// by value, then texts by their UTF-8 bytes, so that the codes do not depend on the order of the rows.
class TextCodes {
public:
    /// @param seen  texts may repeat
    explicit TextCodes(std::vector<SeenText> seen);
    TextCodes(TextCodes&&) noexcept = default; // the labels' texts stay where they are
    TextCodes& operator=(TextCodes&&) noexcept = default;
    TextCodes(const TextCodes&) = delete;
    TextCodes& operator=(const TextCodes&) = delete;
    ~TextCodes() = default;

    [[nodiscard]] bool areTruths() const { return truths_; }
    [[nodiscard]] const std::vector<ValueLabel>& labels() const { return labels_; }
    /// NaN: the column has no such text.
    [[nodiscard]] double of(std::string_view text) const;

private:
    bool truths_ = false;
    std::vector<ValueLabel> labels_;
    std::unordered_map<std::string_view, double> codes_; ///< by the labels' texts, unless they are truths
};

} // namespace korvana
