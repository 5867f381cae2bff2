#include "module/regression/results/ModelResults.h"

#include "module/regression/results/CoxOutput.h"

namespace ozm::survival {

const ModelResults& ResultsOf(RegressionKind /*kind*/) {
    return coxResults;
}

} // namespace ozm::survival
