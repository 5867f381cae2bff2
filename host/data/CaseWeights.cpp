#include "host/data/CaseWeights.h"

#include "host/data/DataError.h"

#include <cstddef>
#include <stdexcept>
#include <string>

namespace korvana {

CaseWeights resolveWeights(const DataSet& data, std::string_view nameOrNumber1,
                           std::span<const std::uint8_t> mask) {
    CaseWeights found;
    found.variable = data.require(nameOrNumber1);
    const Variable& variable = data.variable(found.variable);
    if (variable.kind != VariableKind::Number) {
        throw DataError(data.path(), 0, 0,
                        "the weight variable '" + variable.name + "' holds " +
                            (variable.kind == VariableKind::Text ? "texts" : "dates") +
                            "; choose a variable of numbers");
    }
    found.weights = data.column(found.variable);
    if (!mask.empty() && mask.size() != found.weights.size())
        throw std::invalid_argument("a mask needs one entry per case");
    for (std::size_t i = 0; i < found.weights.size(); ++i) {
        if (!mask.empty() && mask[i] == 0) continue;
        if (variable.isMissing(found.weights[i])) {
            ++found.missingCount;
        } else if (found.weights[i] <= 0) {
            ++found.notPositiveCount;
        }
    }
    return found;
}

} // namespace korvana
