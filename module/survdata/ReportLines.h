#pragma once

#include "support/CAnalysisSupport.h"

#include <string>
#include <string_view>

namespace ozm::survival {

/// Writes one line of the text report and ends it.
void WriteLine(CAnalysisSupport& host, std::string_view line);

/// A whole number as text.
std::string FormatCount(long long count);

/// A number to at most `digits` significant digits, without trailing zeros; the same on every machine and in
/// every locale.
std::string FormatNumber(double value, int digits = 8);

/// A code in a field of 10 characters, one less when its magnitude is at least 0.001 and below 1; "--" when
/// unset.
std::string FormatCode(double code);

/// A variable's name; "--" for variable 0.
std::string VariableName(CAnalysisSupport& host, int variable);

} // namespace ozm::survival
