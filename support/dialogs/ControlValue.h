#pragma once

#include "support/dialogs/DialogTemplate.h"

#include <string>
#include <variant>
#include <vector>

namespace ozm {

/// One list of variable numbers (from 1) per role of a variable-selection control.
using VariableSelection = std::vector<std::vector<int>>;

/// The value of a control; monostate for one that has none (a button).
using ControlValue = std::variant<std::monostate, bool, int, double, std::string, VariableSelection,
                                  std::vector<double>, std::vector<std::string>>;

} // namespace ozm
