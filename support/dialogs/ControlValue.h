#pragma once

#include "support/dialogs/DialogTemplate.h"

#include <string>
#include <variant>
#include <vector>

namespace ozm {

/// One list of variable numbers (from 1) per role of a variable-selection control.
using VariableSelection = std::vector<std::vector<int>>;

/// The entries of a list with columns: one text per column.
using ListRows = std::vector<std::vector<std::string>>;

/// The value of a control; monostate for one that has none (a button).
using ControlValue = std::variant<std::monostate, bool, int, double, std::string, VariableSelection,
                                  std::vector<double>, std::vector<std::string>>;

/// What a control holds before anybody sets it.
ControlValue InitialValue(const ControlTemplate& control);

} // namespace ozm
