#pragma once

#include "host/session/ActiveData.h"

#include <string>
#include <vector>

namespace korvana::cli {

/// How many selected cases have one code, the other, or neither; missing values count nowhere.
struct CodeCounts {
    int first = 0;
    int second = 0;
    int neither = 0;
};
CodeCounts countCodes(const ActiveData& data, int variable0, double first, double second);

/// The codes that a variable has among the selected cases, for messages: "'status' has 0 (5 cases), 1 'dead'
/// (18 cases)".
std::string codesOf(const ActiveData& data, int variable0);

/// The value of a code given as number or value label. A UsageError names the option and lists the codes.
double codeOf(const ActiveData& data, int variable0, const std::string& option, const std::string& text);

} // namespace korvana::cli
