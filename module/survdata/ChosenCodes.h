#pragma once

#include "support/CAnalysisSupport.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace ozm::survival {

/// The codes of a variable that make groups: those that somebody chose, or all that it has.
struct ChosenCodes {
    enum class Fault : std::uint8_t {
        None,
        Unreadable, ///< the host cannot say which codes there are
        TooMany,
        NoNumber, ///< a code is not finite
        Twice,    ///< `code` was chosen twice
    };
    Fault fault = Fault::None;
    double code = 0.0;
    std::vector<double> codes;
};

/// `chosen` if there are any; else all codes of the variable among the selected cases, those that are equal
/// as codes once. At most `most`.
ChosenCodes ChooseCodes(CAnalysisSupport& host, int variable, const std::vector<double>& chosen,
                        std::size_t most);

} // namespace ozm::survival
