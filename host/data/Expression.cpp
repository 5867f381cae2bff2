#include "host/data/Expression.h"

#include "host/data/ExpressionFormula.h"
#include "host/data/ExpressionRun.h"
#include "host/data/TextEncoding.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace korvana {
namespace {

std::string placed(std::string_view expression, std::size_t position, std::string_view text) {
    std::size_t character = 1;
    for (const char c : expression.substr(0, position))
        character += (static_cast<unsigned char>(c) & 0xC0U) != 0x80 ? 1 : 0;
    constexpr std::size_t mostQuoted = 200;
    return std::string("expression \"")
        .append(brief(expression, mostQuoted))
        .append("\", character ")
        .append(std::to_string(character))
        .append(": ")
        .append(text);
}

} // namespace

ExpressionError::ExpressionError(std::string_view expression, std::size_t position, std::string_view text)
    : std::runtime_error(placed(expression, position, text)), position_(position) {}

struct Expression::Compiled {
    Compiled(std::string_view expression, ExpressionFormula formula)
        : text(expression), references(std::move(formula.references)), tested(formula.tested),
          byNumber(std::move(formula.byNumber)), inputs(references.size()),
          run(std::move(formula.program), std::move(formula.tested)) {}

    std::string text;
    std::vector<int> references;
    std::vector<bool> tested;
    std::vector<bool> byNumber;
    std::vector<Input> inputs; ///< of a single case
    ExpressionRun run;
};

Expression::Expression(std::string_view text, const DataSet& data, std::span<const NamedInput> inputs)
    : compiled_(std::make_unique<Compiled>(text, translate(text, data, inputs))) {}

Expression::Expression(Expression&&) noexcept = default;
Expression& Expression::operator=(Expression&&) noexcept = default;
Expression::~Expression() = default;

const std::string& Expression::text() const {
    return compiled_->text;
}

const std::vector<int>& Expression::referencedVariables() const {
    return compiled_->references;
}

bool Expression::isTestedForMissing(std::size_t place) const {
    return compiled_->tested.at(place);
}

bool Expression::isNamedByNumber(std::size_t place) const {
    return compiled_->byNumber.at(place);
}

std::optional<double> Expression::evaluate(std::span<const double> values) const {
    std::vector<Input>& inputs = compiled_->inputs;
    if (values.size() != inputs.size())
        throw std::invalid_argument("an expression needs one value per referenced variable");
    for (std::size_t k = 0; k < values.size(); ++k)
        inputs[k] = {&values[k], 0, std::numeric_limits<double>::quiet_NaN()};
    double result = 0;
    const bool failed = compiled_->run(inputs, {&result, 1}) != 0;
    return failed ? std::nullopt : std::optional(result);
}

int Expression::evaluate(std::span<const Input> inputs, std::span<double> results) const {
    if (inputs.size() != compiled_->inputs.size())
        throw std::invalid_argument("an expression needs one input per referenced variable");
    return compiled_->run(inputs, results);
}

std::vector<double> evaluateAll(const Expression& expression, const DataSet& data,
                                std::span<const double> inputValues) {
    std::vector<double> results(static_cast<std::size_t>(data.caseCount()));
    expression.evaluate(CaseInputs(expression, data, inputValues).from(0), results);
    return results;
}

CaseInputs::CaseInputs(const Expression& expression, const DataSet& data,
                       std::span<const double> inputValues) {
    for (const int reference : expression.referencedVariables()) {
        if (reference <= data.variableCount()) {
            columns_.push_back(
                {data.column(reference - 1).data(), 1, data.variable(reference - 1).missingCode});
            continue;
        }
        const auto input = static_cast<std::size_t>(reference - data.variableCount() - 1);
        if (input >= inputValues.size())
            throw std::invalid_argument("a named input of the expression has no value");
        columns_.push_back({&inputValues[input], 0, std::numeric_limits<double>::quiet_NaN()});
    }
}

std::span<const Expression::Input> CaseInputs::from(std::size_t case0) {
    moved_ = columns_;
    for (Expression::Input& each : moved_)
        each.first += case0 * each.step;
    return moved_;
}

bool CaseInputs::anyMissing(std::size_t case0) const {
    return std::any_of(columns_.begin(), columns_.end(), [case0](const Expression::Input& each) {
        const double value = each.first[case0 * each.step];
        return std::isnan(value) || value == each.missingCode;
    });
}

} // namespace korvana
