#pragma once

#include <string>

namespace ozm::survival {

/// The heading that two lines of the string table (0: none) stand for, without the abbreviations that keep
/// them short; empty where they have none.
std::string HeadingInFull(int line1, int line2);

} // namespace ozm::survival
