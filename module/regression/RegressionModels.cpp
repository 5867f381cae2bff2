#include "module/regression/RegressionModels.h"

#include "module/regression/models/Models.h"

namespace ozm::survival {

const RegressionModel& ModelOf(RegressionKind kind) {
    switch (kind) {
    case RegressionKind::Exponential:
        return exponentialModel;
    case RegressionKind::Lognormal:
        return lognormalModel;
    case RegressionKind::Normal:
        return normalModel;
    case RegressionKind::TimeDependent:
        return timeDependentModel;
    case RegressionKind::ProportionalHazards:
        break;
    }
    return coxModel;
}

} // namespace ozm::survival
