#pragma once

#include "host/data/Variable.h"

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace korvana {

/// A text of a column, in UTF-8, and the first row that has it.
struct SeenText {
    std::string_view text;
    std::int64_t row = 0;
};

/// The codes of the texts of a column. Truth values, if the column has nothing else, are the numbers 0 and 1
/// as everywhere, with the spelling that comes first as their label. All others are counted from 1: numbers
/// by value, then texts by their UTF-8 bytes, so that the codes do not depend on the order of the rows.
struct TextCodes {
    bool areTruths = false;
    std::vector<ValueLabel> labels;
    std::vector<double> codes; ///< one for each of the texts seen
};

/// @param seen  texts may repeat; fewer than 2^32
/// @param threads  used for many texts
TextCodes codesOf(std::span<const SeenText> seen, unsigned threads = 1);

} // namespace korvana
