#pragma once
// Samples of regressions in memory, for their benchmarks.

#include "bench/CoxCases.h"
#include "host/session/SessionMemory.h"
#include "module/regression/data/RegressionSample.h"
#include "support/services/NullServices.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace korvana::bench {

class BenchDocument final : public ozm::CAnalysisDoc, public ozm::NullHost {
public:
    ozm::HostServices& Services() override { return *this; }
    ozm::MemoryService& Memory() override { return memory_; }

private:
    korvana::SessionMemory memory_;
};

inline ozm::CAnalysisSupport& benchHost() {
    static BenchDocument document;
    static ozm::CAnalysisSupport analysis(&document);
    return analysis;
}

/// As many cases as a regression takes, as they are read.
inline std::vector<CoxCase> casesWith(std::int64_t covariates) {
    CoxCases source(static_cast<std::size_t>(covariates));
    std::vector<CoxCase> cases;
    for (int i = 0; i < ozm::survival::RegressionSample::mostCases; ++i)
        cases.push_back(source.next());
    return cases;
}

/// A sample of them, with what is known of the covariates.
inline void fill(ozm::survival::RegressionSample& sample, const std::vector<CoxCase>& cases) {
    if (!sample.Obtain(benchHost(), cases.size(), cases[0].x.size())) std::abort();
    std::int32_t number = 0;
    for (const auto& one : cases)
        sample.Add(one.time, one.event, ++number, 0, one.x);
    sample.Summarise();
}

} // namespace korvana::bench
