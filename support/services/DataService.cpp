#include "support/services/DataService.h"

#include <cstddef>
#include <vector>

namespace ozm {

void DataService::cstarts(int firstCase, std::span<short> answers, std::span<double> values,
                          std::span<const int> variables) {
    std::vector<double> row(variables.size());
    short answer = values.size() < variables.size() * answers.size() ? StopReading : UseCase;
    for (std::size_t i = 0; i < answers.size(); ++i) {
        if (answer != StopReading) answer = cstart(firstCase + static_cast<int>(i), row, variables);
        answers[i] = answer;
        if (answer != UseCase) continue;
        for (std::size_t k = 0; k < row.size(); ++k)
            values[k * answers.size() + i] = row[k];
    }
}

} // namespace ozm
