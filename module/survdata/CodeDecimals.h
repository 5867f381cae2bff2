#pragma once

#include <cstdint>

namespace ozm::survival {

/// How many decimals a code is shown with: about eight significant digits in all. 0 and 1 give 7, 123.5 gives
/// 5, -5 gives 6 (its sign takes a column), small codes get more than eight (0.001 gives 10). Not below 0; a
/// value that is not finite gives 0.
std::int16_t CodeDecimals(double code);

} // namespace ozm::survival
