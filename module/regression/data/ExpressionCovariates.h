#pragma once

#include "module/regression/data/RegressionSample.h"
#include "module/regression/timedependent/TimeCovariates.h"
#include "support/CAnalysisSupport.h"

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

namespace ozm::survival {

/// Covariates by the host's formulas, over variables that stand in the columns of a sample, and the time.
class ExpressionCovariates final : public TimeCovariates {
public:
    /// `variables`: the numbers of those in the sample's columns, among them all that the formulas refer to;
    /// the one formulas have for the time is `timeReference`. The sample is in its order; all must outlive
    /// this.
    ExpressionCovariates(CAnalysisSupport& host,
                         std::span<const std::unique_ptr<CompiledExpression>> expressions,
                         const RegressionSample& sample, std::span<const int> variables, int timeReference);

    [[nodiscard]] std::size_t Count() const override { return covariates_.size(); }
    [[nodiscard]] bool DependsOnTime(std::size_t covariate) const override {
        return covariates_[covariate].dependsOnTime;
    }
    void Evaluate(std::size_t covariate, std::size_t first, double time, std::span<double> values) override;

private:
    struct Covariate {
        const CompiledExpression* expression = nullptr;
        bool dependsOnTime = false;
        /// By what the formula refers to: the whole column of a variable; of the time none.
        std::vector<std::span<const double>> columns;
    };

    CAnalysisSupport& host_;
    std::vector<Covariate> covariates_;
    std::vector<std::span<const double>> parts_; ///< of the columns, in the evaluation under way
};

} // namespace ozm::survival
