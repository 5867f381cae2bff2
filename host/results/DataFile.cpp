#include "host/results/DataFile.h"

#include <system_error>

#include "host/data/FileName.h"
#include "host/results/OutputFile.h"

namespace korvana {

void refuseDataFile(const std::filesystem::path& target, const std::filesystem::path& dataFile) {
    std::error_code error; // as a rule, one of them is not there
    if (!dataFile.empty() && !hasNul(target) && std::filesystem::equivalent(target, dataFile, error))
        throwCannotWrite(target, "it is the data file; choose another name or folder");
}

void refuseDataFile(const std::filesystem::path& target, const ResultsBook& book) {
    const RunOrigin* before = nullptr; // most outputs share one
    for (const ResultsBook::Output& output : book.outputs) {
        const auto& origin = ResultsBook::originOf(output);
        const RunOrigin* const run = origin != nullptr ? origin->run.get() : nullptr;
        if (run == nullptr || run == before) continue;
        refuseDataFile(target, std::filesystem::path{run->data.where()});
        before = run;
    }
}

} // namespace korvana
