#include "module/regression/data/ExpressionCovariates.h"

#include <algorithm>
#include <limits>

namespace ozm::survival {

ExpressionCovariates::ExpressionCovariates(CAnalysisSupport& host,
                                           std::span<const std::unique_ptr<CompiledExpression>> expressions,
                                           const RegressionSample& sample, std::span<const int> variables,
                                           int timeReference)
    : host_(host) {
    std::size_t most = 0;
    for (const auto& expression : expressions) {
        Covariate& covariate = covariates_.emplace_back();
        covariate.expression = expression.get();
        for (const int reference : expression->References()) {
            std::span<const double>& column = covariate.columns.emplace_back();
            if (reference == timeReference) {
                covariate.dependsOnTime = true;
                continue;
            }
            const auto found = std::ranges::find(variables, reference);
            if (found != variables.end())
                column = sample.Column(static_cast<std::size_t>(found - variables.begin()));
        }
        most = std::max(most, covariate.columns.size());
    }
    parts_.reserve(most);
}

void ExpressionCovariates::Evaluate(std::size_t covariate, std::size_t first, double time,
                                    std::span<double> values) {
    const Covariate& of = covariates_[covariate];
    parts_.clear();
    for (const std::span<const double> column : of.columns)
        parts_.push_back(column.empty() ? std::span{&time, 1} : column.subspan(first, values.size()));
    if (host_.RunSpreadsheetFormulas(parts_, *of.expression, values) < 0)
        std::ranges::fill(values, std::numeric_limits<double>::quiet_NaN());
}

} // namespace ozm::survival
