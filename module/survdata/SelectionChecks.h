#pragma once

#include "module/survdata/SharedSettings.h"
#include "support/CAnalysisSupport.h"

#include <cstddef>
#include <string>

namespace ozm::survival {

/// How many codes of a variable a message lists at most.
inline constexpr std::size_t codesShown = 12;

/// What a specification dialog asks of its selections before it runs: one, two or six time variables, a
/// censoring variable, two different codes. Returns the string number of the message to show, 0 when all is
/// well.
int CheckSelections(const SharedSettings& settings);

/// Whether a selected case has a code of a variable; true when the host does not tell.
bool IsCodeOf(CAnalysisSupport& host, int variable, double code);

/// The codes that a variable has among the selected cases, the first twelve with their labels and counts;
/// empty when the host does not tell.
std::string DescribeCodes(CAnalysisSupport& host, int variable);

} // namespace ozm::survival
