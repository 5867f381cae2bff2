#pragma once

#include <string>
#include <vector>

#include "host/results/OutputOrigin.h"

namespace korvana {

/// The dialog that specified a run (which has dialogs): the last one that names variables, else the last.
[[nodiscard]] const DialogSettings& specificationOf(const RunOrigin& run);

/// Where results came from, for people, in one line: data file, cases with their selection, weights,
/// variables and codes. Without the time of day, which differs from one output of a run to the next.
[[nodiscard]] std::string originLine(const RunOrigin& run);

/// Those settings of the dialog that made an output which differ for one of `others`: "Level: 0.9".
[[nodiscard]] std::string differingSettings(const OutputOrigin& origin,
                                            const std::vector<const OutputOrigin*>& others);

/// The time of day at which an output was made, "14:05:09", and its date before it.
[[nodiscard]] std::string timeOfDay(const OutputOrigin& origin);
[[nodiscard]] std::string dateAndTime(const OutputOrigin& origin);

/// What a run was made from, one item a line.
[[nodiscard]] std::vector<std::string> originLines(const RunOrigin& run);
/// The same for an output, with the time, the settings of the dialog that made it, and the analysis's remarks
/// about the run.
[[nodiscard]] std::vector<std::string> originLines(const OutputOrigin& origin);

} // namespace korvana
