#include "host/session/SessionExpressions.h"

#include "host/data/Expression.h"

#include <algorithm>
#include <exception>
#include <limits>
#include <typeinfo>
#include <vector>

namespace korvana {
namespace {

class Formula final : public ozm::CompiledExpression {
public:
    Formula(Expression expression, const DataSet& data) : expression_(std::move(expression)) {
        const std::vector<int>& appearing = expression_.referencedVariables();
        references_ = appearing;
        std::sort(references_.begin(), references_.end());
        for (const int reference : appearing) {
            const auto place = std::lower_bound(references_.begin(), references_.end(), reference);
            places_.push_back(static_cast<std::size_t>(place - references_.begin()));
            missingCodes_.push_back(reference <= data.variableCount()
                                        ? data.variable(reference - 1).missingCode
                                        : std::numeric_limits<double>::quiet_NaN());
        }
        inOrder_.resize(appearing.size());
        inputs_.resize(appearing.size());
    }

    [[nodiscard]] std::span<const int> References() const override { return references_; }

    [[nodiscard]] std::optional<double> evaluate(std::span<const double> values) const {
        if (values.size() != places_.size()) return std::nullopt;
        for (std::size_t k = 0; k < places_.size(); ++k) {
            const double value = values[places_[k]];
            inOrder_[k] = value == missingCodes_[k] ? std::numeric_limits<double>::quiet_NaN() : value;
        }
        return expression_.evaluate(inOrder_);
    }

    /// For many cases, see the service.
    [[nodiscard]] int evaluate(std::span<const std::span<const double>> columns,
                               std::span<double> results) const {
        if (columns.size() != places_.size()) return -1;
        for (const auto& column : columns)
            if (column.size() != 1 && column.size() != results.size()) return -1;
        for (std::size_t k = 0; k < places_.size(); ++k) {
            const auto column = columns[places_[k]];
            inputs_[k] = {column.data(), column.size() == 1 ? 0U : 1U, missingCodes_[k]};
        }
        return expression_.evaluate(inputs_, results);
    }

private:
    Expression expression_;
    std::vector<int> references_;         ///< ascending, as the module sees them
    std::vector<std::size_t> places_;     ///< the place of the expression's k-th value among them
    std::vector<double> missingCodes_;    ///< of the k-th value
    mutable std::vector<double> inOrder_; ///< kept so that evaluations do not allocate
    mutable std::vector<Expression::Input> inputs_;
};

} // namespace

short SessionExpressions::COMP(std::string_view text, std::span<const std::string> extraNames,
                               std::unique_ptr<ozm::CompiledExpression>& compiled, std::string& error) {
    compiled.reset();
    error.clear();
    try {
        const DataSet& data = data_.dataSet();
        std::vector<NamedInput> inputs;
        for (const std::string& name : extraNames)
            inputs.push_back({name, data.variableCount() + static_cast<int>(inputs.size()) + 1});
        compiled = std::make_unique<Formula>(Expression(text, data, inputs), data);
        return 0;
    } catch (const std::exception& failure) {
        error = failure.what();
        return 1;
    }
}

int SessionExpressions::RunSpreadsheetFormula(std::span<const double> values,
                                              const ozm::CompiledExpression& compiled, double& result) {
    result = 0.0;
    // An exact type test: evaluations are many, and a dynamic_cast costs more than a short formula.
    if (typeid(compiled) != typeid(Formula)) return 1;
    const std::optional<double> value = static_cast<const Formula&>(compiled).evaluate(values);
    if (!value) return 1;
    result = *value;
    return 0;
}

int SessionExpressions::RunSpreadsheetFormulas(std::span<const std::span<const double>> columns,
                                               const ozm::CompiledExpression& compiled,
                                               std::span<double> results) {
    if (typeid(compiled) != typeid(Formula)) return -1;
    return static_cast<const Formula&>(compiled).evaluate(columns, results);
}

} // namespace korvana
