#pragma once

#include <functional>
#include <optional>

#include "host/results/ChartDrawing.h"

namespace korvana {

/// Calls `draw` in a process of its own and answers its picture. A drawing library out of memory aborts,
/// faults or waits for ever; in a process of its own it takes nothing but the picture with it, and the
/// picture's error says so. Stops (SIGINT, SIGTERM, SIGHUP) end that process at once, whatever the program
/// does about them. Nothing when the system has no room for a further process (`ulimit -u`).
[[nodiscard]] std::optional<Picture> drawApart(const std::function<Picture()>& draw);

} // namespace korvana
