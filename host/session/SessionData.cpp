#include "host/session/SessionData.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace korvana {
namespace {

/// A number that counts from 1 as an index; numbers below 1 become indices beyond every range.
std::size_t index(int number1) {
    return static_cast<std::size_t>(static_cast<unsigned>(number1) - 1U);
}

} // namespace

short SessionData::cstart(int caseNumber, std::span<double> values, std::span<const int> variables) {
    const std::size_t place = index(caseNumber);
    if (place >= static_cast<std::size_t>(data_.dataSet().caseCount()) || values.size() < variables.size())
        return ozm::StopReading;
    const auto mask = data_.mask();
    if (!mask.empty() && mask[place] == 0) return ozm::SkipCase;
    const auto columns = data_.columns();
    for (std::size_t k = 0; k < variables.size(); ++k) {
        const std::size_t variable = index(variables[k]);
        if (variable >= columns.size()) return ozm::StopReading;
        values[k] = columns[variable].value(place);
    }
    return ozm::UseCase;
}

void SessionData::cstarts(int firstCase, std::span<short> answers, std::span<double> values,
                          std::span<const int> variables) {
    const std::size_t first = index(firstCase);
    const auto cases = static_cast<std::size_t>(data_.dataSet().caseCount());
    const auto columns = data_.columns();
    if (first >= cases || values.size() < variables.size() * answers.size() ||
        !std::ranges::all_of(variables, [&](int k) { return index(k) < columns.size(); })) {
        DataService::cstarts(firstCase, answers, values, variables);
        return;
    }
    const std::size_t count = std::min(answers.size(), cases - first);
    for (std::size_t k = 0; k < variables.size(); ++k) {
        const ActiveData::Cells& column = columns[index(variables[k])];
        double* const target = values.data() + k * answers.size();
        for (std::size_t i = 0; i < count; ++i)
            target[i] = column.value(first + i);
    }
    const auto mask = data_.mask();
    for (std::size_t i = 0; i < count; ++i)
        answers[i] = mask.empty() || mask[first + i] != 0 ? ozm::UseCase : ozm::SkipCase;
    std::ranges::fill(answers.subspan(count), short{ozm::StopReading});
}

short SessionData::getmd5(int variable, double& missingCode) {
    missingCode = std::numeric_limits<double>::quiet_NaN();
    if (index(variable) >= data_.columns().size()) return 1;
    // A module may round the code to single precision. A code that this changes would match other cells, so
    // it is not given; the cells that have it are NaN anyway.
    const double code = data_.dataSet().variable(variable - 1).missingCode;
    if (std::abs(code) <= std::numeric_limits<float>::max() &&
        static_cast<double>(static_cast<float>(code)) == code)
        missingCode = code;
    return 0;
}

std::string SessionData::CaseName(int caseNumber) {
    const DataSet& data = data_.dataSet();
    if (!data.hasCaseNames() || caseNumber < 1 || caseNumber > data.caseCount()) return {};
    return std::string{data.caseName(caseNumber - 1)};
}

} // namespace korvana
