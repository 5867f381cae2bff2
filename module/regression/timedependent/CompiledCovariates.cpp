#include "module/regression/timedependent/CompiledCovariates.h"

#include <algorithm>

namespace ozm::survival {

CompiledCovariates::Fault CompiledCovariates::Compile(CAnalysisSupport& host,
                                                      std::span<const DefinedCovariate> covariates) {
    compiled_.clear();
    variables_.clear();
    const int time = host.NumberOfVariables() + 1;
    const std::vector<std::string> names{std::string{timeName}};
    for (std::size_t k = 0; k < covariates.size(); ++k) {
        Compiled each;
        std::string error;
        if (host.COMP(covariates[k].expression, names, each.expression, error) != 0) return {k, error};
        for (const int reference : each.expression->References()) {
            if (reference == time) {
                each.dependsOnTime = true;
                each.inputs.push_back(ofTime);
                continue;
            }
            const auto place = std::ranges::find(variables_, reference);
            each.inputs.push_back(static_cast<std::size_t>(place - variables_.begin()));
            if (place == variables_.end()) variables_.push_back(reference);
        }
        compiled_.push_back(std::move(each));
    }
    return {};
}

} // namespace ozm::survival
