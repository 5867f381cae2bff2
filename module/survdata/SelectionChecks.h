#pragma once

#include "module/survdata/SharedSettings.h"
#include "support/CAnalysisSupport.h"

#include <cstddef>
#include <string>

namespace ozm::survival {

/// The most codes of a variable that a message lists.
inline constexpr std::size_t codesShown = 12;

/// Checks the selections of a specification dialog before it runs: one, two or six time variables, a
/// censoring variable, two different codes. Returns the string number of the message to show, 0 when all is
/// well.
int CheckSelections(const SharedSettings& settings);

/// Whether some selected case has this code of a variable; true when the host cannot say.
bool IsCodeOf(CAnalysisSupport& host, int variable, double code);

/// The codes that a variable has among the selected cases, the first twelve with their labels and counts;
/// empty when the host cannot say.
std::string DescribeCodes(CAnalysisSupport& host, int variable);

} // namespace ozm::survival
