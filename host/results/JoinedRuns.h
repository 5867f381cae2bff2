#pragma once

#include <string>
#include <vector>

#include "host/results/ResultsBook.h"

namespace korvana {

/// The results of one of several runs over the same cases.
struct NamedBook {
    std::string name; ///< "lognormal"; empty: about all of the runs
    ResultsBook book;
};

/// One book of all of them, in their order. Each title that does not begin with the name of its run
/// gets it, "Parameter Estimates, lognormal", and so do origins; messages and iterations say whose they are.
/// Notes that every run has stand once.
[[nodiscard]] ResultsBook joinedRuns(std::vector<NamedBook> runs);

} // namespace korvana
