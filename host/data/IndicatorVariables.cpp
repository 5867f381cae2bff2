#include "host/data/IndicatorVariables.h"

#include "host/data/NumberText.h"
#include "host/data/TextEncoding.h"

namespace korvana {
namespace {

std::string quotedText(std::string_view text) {
    std::string quoted = "'";
    for (const char c : text)
        quoted.append(c == '\'' ? 2 : 1, c);
    return quoted + "'";
}

} // namespace

Definition indicatorOf(const DataSet& data, int variable0, double code) {
    const Variable& variable = data.variable(variable0);
    const std::string number = numberText(code);
    const auto label = variable.labelOf(code);
    const std::string name = label ? withEscapes(*label) : number;
    // A label that several codes have, or that has other meanings in expressions, would not tell the code.
    const bool tells = label && variable.valueOf(*label) == code;
    return {variable.name + "=" + name,
            nameInExpression(variable.name) + " = " + (tells ? quotedText(*label) : number)};
}

} // namespace korvana
