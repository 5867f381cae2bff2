#pragma once

#include "module/regression/timedependent/CovariateList.h"
#include "support/CAnalysisSupport.h"

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace ozm::survival {

/// The name by which an expression refers to the time at which it is evaluated.
inline constexpr std::string_view timeName = "T_";
/// The most variables that the expressions of a model refer to.
inline constexpr std::size_t mostVariablesOfExpressions = 200;

/// The expressions of a model, compiled by the host, with the variables that they need.
class CompiledCovariates {
public:
    /// A covariate as its expression needs it: for each reference the place among the model's variables, or
    /// `ofTime`.
    struct Compiled {
        std::unique_ptr<CompiledExpression> expression;
        std::vector<std::size_t> inputs;
        bool dependsOnTime = false;
    };
    static constexpr std::size_t ofTime = static_cast<std::size_t>(-1);

    /// What cannot be compiled, by the covariate's place; the text says what is wrong and where.
    struct Fault {
        std::size_t covariate = 0;
        std::string text;
    };

    /// Compiles the expressions. Returns the first fault; an empty text: none.
    Fault Compile(CAnalysisSupport& host, std::span<const DefinedCovariate> covariates);

    [[nodiscard]] std::size_t Size() const { return compiled_.size(); }
    [[nodiscard]] const Compiled& operator[](std::size_t covariate) const { return compiled_[covariate]; }
    /// Numbers of the variables, in order of their first appearance.
    [[nodiscard]] const std::vector<int>& Variables() const { return variables_; }

private:
    std::vector<Compiled> compiled_;
    std::vector<int> variables_;
};

} // namespace ozm::survival
