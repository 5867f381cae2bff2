#pragma once

namespace ozm::survival {

/// Whether two doubles are equal as codes: both finite and at most 15 units in the last place apart. An unset
/// code equals nothing, itself included.
bool CodesEqual(double a, double b);

/// Whether a is greater than b by more than that tolerance.
bool GreaterThan(double a, double b);

} // namespace ozm::survival
