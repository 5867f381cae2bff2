#pragma once

#include "module/regression/results/RegOutput.h"

#include <string>
#include <vector>

namespace ozm::survival {

/// Values of all covariates, and a sentence that says which were given.
struct CovariateValues {
    std::vector<double> values;
    std::string described;
};
/// Those for the user-defined plot: the ones that were given, else the means.
CovariateValues ValuesForPlot(const RegReportOf& of);

/// The means of all covariates.
std::vector<double> CovariateMeans(const RegressionResults& results);

} // namespace ozm::survival
