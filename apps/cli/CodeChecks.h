#pragma once

#include "host/session/ActiveData.h"

#include <array>
#include <string>

namespace korvana::cli {

/// Two codes of one variable that belong together, as options give them: "--complete" and "--censored".
struct CodePair {
    struct Option {
        const char* name;
        const std::string& text;
    };
    Option first;
    Option second;
    const char* meaning; ///< "the code of complete and the code of censored observations"
};

/// The values of both. A UsageError names an option that is missing, or whose text is no code, and lists the
/// codes that there are.
std::array<double, 2> resolveCodes(const ActiveData& data, int variable0, const CodePair& pair);

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

} // namespace korvana::cli
