#include "module/regression/results/ModelResults.h"

#include "module/regression/results/CoxOutput.h"
#include "module/regression/results/ParametricOutput.h"
#include "module/regression/results/TimeDependentOutput.h"

namespace ozm::survival {

const ModelResults& ResultsOf(RegressionKind kind) {
    switch (kind) {
    case RegressionKind::Exponential:
        return exponentialResults;
    case RegressionKind::Lognormal:
        return lognormalResults;
    case RegressionKind::Normal:
        return normalResults;
    case RegressionKind::TimeDependent:
        return timeDependentResults;
    case RegressionKind::ProportionalHazards:
        return coxResults;
    }
    return coxResults;
}

} // namespace ozm::survival
