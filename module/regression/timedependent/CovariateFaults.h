#pragma once

#include "module/regression/timedependent/CovariateList.h"

#include <span>
#include <string>

namespace ozm::survival {

/// What is wrong with covariates: a message, 0 where nothing is, and what it does not know of them.
struct ListFault {
    int message = 0;
    std::string detail{};
};

/// Why a clean text cannot be the name of a covariate; empty: it can.
std::string FaultOfName(const std::string& name);

/// What a list must be for a model and for a file: the first fault of it.
ListFault FaultOf(std::span<const DefinedCovariate> list);

} // namespace ozm::survival
