#include "module/regression/RegressionModels.h"

#include "module/regression/models/Models.h"

#include <algorithm>
#include <iterator>

namespace ozm::survival {

const RegressionModel* FindRegressionModel(RegressionKind kind) {
    static constexpr const RegressionModel* models[] = {&coxModel, &exponentialModel, &lognormalModel,
                                                        &normalModel, &timeDependentModel};
    const auto* const found = std::ranges::find(models, kind, [](const auto* model) { return model->kind; });
    return found != std::end(models) ? *found : nullptr;
}

} // namespace ozm::survival
