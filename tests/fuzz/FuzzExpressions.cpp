// Expressions: any text is a formula, or is refused with the place of the fault; conditions and definitions
// alike.

#include "host/data/CaseSelection.h"
#include "host/data/ComputedVariable.h"
#include "host/data/DataError.h"
#include "host/data/Expression.h"
#include "tests/fuzz/Scratch.h"

#include <cmath>
#include <cstdint>
#include <limits>

namespace korvana::fuzz {
namespace {

constexpr double none = std::numeric_limits<double>::quiet_NaN();

void add(DataSet& data, Variable variable, std::initializer_list<double> cells) {
    Column column(cells.size());
    std::copy(cells.begin(), cells.end(), column.data());
    data.addVariable(std::move(variable), std::move(column));
}

const DataSet& data() {
    static const DataSet made = [] {
        DataSet all("data.csv", 5);
        Variable x;
        x.name = "x";
        add(all, x, {1, -2.5, none, 0, 1e300});
        Variable y;
        y.name = "white cells";
        y.missingCode = 9;
        add(all, y, {9, 2, 3, 9, 0.1});
        Variable group;
        group.name = "Group";
        group.kind = VariableKind::Text;
        group.valueLabels = {{1, "a"}, {2, "b c"}};
        add(all, group, {1, 2, 2, none, 1});
        Variable day;
        day.name = "day";
        day.kind = VariableKind::Date;
        add(all, day, {2449733, 2449734, none, 2449733, 2440000});
        return all;
    }();
    return made;
}

/// All cases at once and each by itself give the same.
void oneByOne(const Expression& expression) {
    const double time[] = {2.5};
    const std::vector<double> all = evaluateAll(expression, data(), time);
    CaseInputs inputs(expression, data(), time);
    for (std::size_t i = 0; i < all.size(); ++i) {
        double one = 0;
        expression.evaluate(inputs.from(i), {&one, 1});
        require(one == all[i] || (std::isnan(one) && std::isnan(all[i])), "a case by itself is the same",
                expression.text());
    }
}

void evaluate(std::string_view text) {
    const NamedInput time[] = {{"T_", data().variableCount() + 1}};
    oneByOne(Expression(text, data(), time));
    const Expression expression(text, data());
    const std::vector<double> values = evaluateAll(expression, data());
    for (const double value : values)
        require(!std::isinf(value), "a value is finite or missing", text);
    for (const int reference : expression.referencedVariables())
        require(reference >= 1 && reference <= data().variableCount(), "references are variables", text);

    const ComputedVariable computed = computeVariable(data(), {"new", std::string{text}});
    for (std::size_t i = 0; i < values.size(); ++i) {
        const double cell = computed.cells.cells(values.size())[i];
        require(cell == values[i] || (std::isnan(cell) && std::isnan(values[i])),
                "a computed variable holds the values of its expression", text);
    }
    try {
        const CaseSelection selection = selectCases(data(), text);
        for (std::size_t i = 0; i < values.size(); ++i)
            require((selection.mask[i] != 0) == (!std::isnan(values[i]) && values[i] != 0),
                    "the cases for which the condition holds are selected", text);
    } catch (const DataError& error) {
        require(std::string_view(error.what()).find("case ") != std::string_view::npos, "the case is named",
                text);
    }
}

void define(std::string_view text) {
    const Definition definition = readDefinition(text);
    const Definition back = readDefinition(definitionText(definition));
    require(back.name == definition.name && back.expression == definition.expression,
            "a definition reads back as written", text);
    requireNewName(data(), definition.name);
}

} // namespace
} // namespace korvana::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace korvana;
    const std::string_view text(reinterpret_cast<const char*>(bytes), size);
    try {
        fuzz::evaluate(text);
    } catch (const ExpressionError& error) {
        fuzz::require(error.position() <= size, "the fault lies in the expression", text);
    }
    try {
        fuzz::define(text);
    } catch (const DataError&) { // refused with a reason
    }
    return 0;
}
