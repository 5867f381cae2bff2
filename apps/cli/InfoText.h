#pragma once

#include "host/session/ActiveData.h"

#include <ostream>

namespace korvana::cli {

/// Describes a data set over its selected cases: every variable with number, kind, counts, range, and the
/// codes of those that have few values. Lines are 100 columns at most where names allow.
void writeInfo(const ActiveData& data, std::ostream& out);

/// The same as one JSON object.
void writeInfoJson(const ActiveData& data, std::ostream& out);

} // namespace korvana::cli
