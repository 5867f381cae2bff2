#pragma once

#include "module/regression/timedependent/CovariateList.h"
#include "support/CAnalysisSupport.h"

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ozm::survival {

/// The name by which an expression refers to the time at which it is evaluated.
inline constexpr std::string_view timeName = "T_";
/// The most variables that the expressions of a model refer to.
inline constexpr std::size_t mostVariablesOfExpressions = 200;

/// The expressions of a model, compiled by the host, and the variables that they need.
class CompiledCovariates {
public:
    /// What cannot be compiled, by the covariate's place; the text says what is wrong and where, and is empty
    /// where nothing is.
    struct Fault {
        std::size_t covariate = 0;
        std::string text;
    };

    /// Compiles the expressions, up to the first that has a fault.
    Fault Compile(CAnalysisSupport& host, std::span<const DefinedCovariate> covariates);

    [[nodiscard]] std::span<const std::unique_ptr<CompiledExpression>> Expressions() const {
        return expressions_;
    }
    /// Numbers of the variables, in order of their first appearance.
    [[nodiscard]] const std::vector<int>& Variables() const { return variables_; }
    /// The number that stands for the time.
    [[nodiscard]] int TimeReference() const { return timeReference_; }

private:
    std::vector<std::unique_ptr<CompiledExpression>> expressions_;
    std::vector<int> variables_;
    int timeReference_ = 0;
};

} // namespace ozm::survival
