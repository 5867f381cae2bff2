#pragma once

#include "support/dialogs/DialogTemplate.h"
#include "support/services/VariableService.h"

#include <array>
#include <string_view>

namespace korvana::desktop {

/// Which of the two codes of a variable each of two code fields means, in the order of the fields. The words
/// in the value labels decide, if they fit one code and do not contradict the other; else the name of the
/// variable, which says what its code 1 ("yes") stands for; else the fields' usual codes; else the first
/// field gets the lower code.
/// @param codes     ascending
/// @param variable  its name
[[nodiscard]] std::array<double, 2> guessCodes(const std::array<const ozm::ControlTemplate*, 2>& fields,
                                               const std::array<ozm::CodeCount, 2>& codes,
                                               std::string_view variable);

} // namespace korvana::desktop
