#include "module/regression/timedependent/CompiledCovariates.h"

#include <algorithm>
#include <utility>

namespace ozm::survival {

CompiledCovariates::Fault CompiledCovariates::Compile(CAnalysisSupport& host,
                                                      std::span<const DefinedCovariate> covariates) {
    expressions_.clear();
    variables_.clear();
    timeReference_ = host.NumberOfVariables() + 1;
    const std::vector<std::string> names{std::string{timeName}};
    for (std::size_t k = 0; k < covariates.size(); ++k) {
        std::unique_ptr<CompiledExpression> expression;
        std::string error;
        if (host.COMP(covariates[k].expression, names, expression, error) != 0) return {k, error};
        for (const int reference : expression->References())
            if (reference != timeReference_ && std::ranges::find(variables_, reference) == variables_.end())
                variables_.push_back(reference);
        expressions_.push_back(std::move(expression));
    }
    return {};
}

} // namespace ozm::survival
