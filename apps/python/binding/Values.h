#pragma once

#include "apps/python/binding/Module.h"
#include "support/automation/AutomationValue.h"

#include <stdexcept>

namespace korvana::python {

/// A value that no dialog knows; what() says which.
struct UnknownValue : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// A Python value as dialogs take it: None, numbers, texts, sequences of them, numpy arrays and scalars.
/// Throws UnknownValue.
[[nodiscard]] ozm::AutomationValue toAutomation(const py::handle& value);

/// The other way. Objects become a pair of type and name.
[[nodiscard]] py::object toPython(const ozm::AutomationValue& value);

} // namespace korvana::python
