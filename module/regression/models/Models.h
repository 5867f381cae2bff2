#pragma once

#include "module/regression/RegressionModels.h"

namespace ozm::survival {

extern const RegressionModel coxModel;
extern const RegressionModel exponentialModel;
extern const RegressionModel timeDependentModel;
extern const RegressionModel lognormalModel;
extern const RegressionModel normalModel;

} // namespace ozm::survival
