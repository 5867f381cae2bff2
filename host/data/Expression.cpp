#include "host/data/Expression.h"

#include "host/data/ExpressionFormula.h"
#include "host/data/ExpressionFunctions.h"
#include "host/data/TextEncoding.h"

#include <cmath>
#include <limits>
#include <utility>

#include <muParser.h>

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
    std::string text;
    ExpressionFormula formula;
    std::vector<double> values; ///< where the parser finds v0, v1, ...
    mu::Parser parser;
};

Expression::Expression(std::string_view text, const DataSet& data, std::span<const NamedInput> inputs)
    : compiled_(std::make_unique<Compiled>()) {
    Compiled& compiled = *compiled_;
    compiled.text = text;
    compiled.formula = translate(text, data, inputs);
    const ExpressionFormula& formula = compiled.formula;
    compiled.values.assign(formula.references.size(), 0.0);
    try {
        mu::Parser& parser = compiled.parser;
        defineExpressionFunctions(parser);
        parser.EnableOptimizer(false); // it reorders arithmetic, which changes the last digits
        for (std::size_t i = 0; i < compiled.values.size(); ++i)
            parser.DefineVar(std::string("v").append(std::to_string(i)), &compiled.values[i]);
        for (std::size_t i = 0; i < formula.constants.size(); ++i)
            parser.DefineConst(std::string("c").append(std::to_string(i)), formula.constants[i]);
        parser.SetExpr(formula.text);
        parser.Eval(); // compiles
    } catch (const mu::ParserError&) {
        throw ExpressionError(text, 0,
                              "the expression cannot be understood; split it or put parts in parentheses");
    }
}

Expression::Expression(Expression&&) noexcept = default;
Expression& Expression::operator=(Expression&&) noexcept = default;
Expression::~Expression() = default;

const std::string& Expression::text() const {
    return compiled_->text;
}

const std::vector<int>& Expression::referencedVariables() const {
    return compiled_->formula.references;
}

bool Expression::isTestedForMissing(std::size_t place) const {
    return compiled_->formula.tested.at(place);
}

bool Expression::isNamedByNumber(std::size_t place) const {
    return compiled_->formula.byNumber.at(place);
}

std::optional<double> Expression::evaluate(std::span<const double> values) const {
    Compiled& compiled = *compiled_;
    if (values.size() != compiled.values.size())
        throw std::invalid_argument("an expression needs one value per referenced variable");
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (std::isnan(values[i]) && !compiled.formula.tested[i]) return std::nullopt;
        compiled.values[i] = values[i];
    }
    const double result = compiled.parser.Eval();
    return std::isfinite(result) ? std::optional(result) : std::nullopt;
}

int Expression::evaluate(std::span<const Input> inputs, std::span<double> results) const {
    Compiled& compiled = *compiled_;
    if (inputs.size() != compiled.values.size())
        throw std::invalid_argument("an expression needs one input per referenced variable");
    constexpr double none = std::numeric_limits<double>::quiet_NaN();
    int failures = 0;
    for (std::size_t i = 0; i < results.size(); ++i) {
        bool complete = true;
        for (std::size_t k = 0; k < inputs.size(); ++k) {
            const Input& input = inputs[k];
            const double value = input.first[i * input.step];
            const bool missing = std::isnan(value) || value == input.missingCode;
            complete = complete && (!missing || compiled.formula.tested[k]);
            compiled.values[k] = missing ? none : value;
        }
        const double result = complete ? compiled.parser.Eval() : none;
        results[i] = std::isfinite(result) ? result : none;
        failures += std::isfinite(result) ? 0 : 1;
    }
    return failures;
}

std::vector<double> evaluateAll(const Expression& expression, const DataSet& data,
                                std::span<const double> inputValues) {
    CaseValues cases(expression, data, inputValues);
    std::vector<double> results(static_cast<std::size_t>(data.caseCount()));
    for (std::size_t i = 0; i < results.size(); ++i)
        results[i] = expression.evaluate(cases.take(i)).value_or(std::numeric_limits<double>::quiet_NaN());
    return results;
}

CaseValues::CaseValues(const Expression& expression, const DataSet& data,
                       std::span<const double> inputValues) {
    for (std::size_t place = 0; place < expression.referencedVariables().size(); ++place) {
        const int reference = expression.referencedVariables()[place];
        values_.push_back(std::numeric_limits<double>::quiet_NaN());
        if (reference <= data.variableCount()) {
            sources_.push_back({place, data.column(reference - 1), data.variable(reference - 1).missingCode});
            continue;
        }
        const auto input = static_cast<std::size_t>(reference - data.variableCount() - 1);
        if (input >= inputValues.size())
            throw std::invalid_argument("a named input of the expression has no value");
        values_.back() = inputValues[input];
    }
}

std::span<const double> CaseValues::take(std::size_t case0) {
    missing_ = false;
    for (const Source& source : sources_) {
        const double value = source.cells[case0];
        const bool missing = std::isnan(value) || value == source.missingCode;
        values_[source.place] = missing ? std::numeric_limits<double>::quiet_NaN() : value;
        missing_ = missing_ || missing;
    }
    return values_;
}

} // namespace korvana
