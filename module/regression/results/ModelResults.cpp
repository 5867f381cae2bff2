#include "module/regression/results/ModelResults.h"

#include "module/regression/results/CoxOutput.h"

namespace ozm::survival {

extern const ModelResults parametricResults;

const ModelResults& ResultsOf(RegressionKind kind) {
    return kind == RegressionKind::ProportionalHazards ? coxResults : parametricResults;
}

} // namespace ozm::survival
