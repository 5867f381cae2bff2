#pragma once

#include "host/session/ActiveData.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace korvana::cli {

/// A code of a variable, given by an option.
struct CodeOption {
    std::string name; ///< "--complete"
    std::string text; ///< a number or a value label; empty: not given
};

/// The values of codes that belong together. A UsageError names the options that are missing or whose text is
/// no code, says what they mean ("the codes of the two groups") and lists the codes that there are.
std::vector<double> resolveCodes(const ActiveData& data, int variable0,
                                 const std::vector<CodeOption>& options, const char* meaning);

/// Which codes some selected case has; missing values are passed over.
struct CodesFound {
    std::vector<bool> each; ///< in the order of the codes
    bool others = false;    ///< another code was found; not known when each of the codes was
};
/// Ends where all are found, among the first cases as a rule.
CodesFound findCodes(const ActiveData& data, int variable0, std::span<const double> codes);

/// "--censored 0: no case has this code"
std::string noCaseHas(const std::string& option, double code);

/// The codes that a variable has among the selected cases, for messages: "'status' has 0 (5 cases), 1 'dead'
/// (18 cases)". Or among the cases with a mark in `mask`, where there is one.
std::string codesOf(const ActiveData& data, int variable0, std::span<const std::uint8_t> mask = {});

} // namespace korvana::cli
