#include "module/twosample/GroupLifeTables.h"

#include <algorithm>
#include <cstddef>

namespace ozm::survival {

int GroupLifeTables::Rows() const {
    return std::max(tables[0].rows, tables[1].rows);
}

Status ComputeGroupLifeTables(const PooledSample& sample, GroupLifeTables& result) {
    result = {};
    const Intervals intervals = IntervalsByNumber(sample.observations.back().time);
    const std::array sizes{sample.counts.N1(), sample.counts.N2()};
    Status status = Status::TooFewValid;
    for (std::size_t g = 0; g < sizes.size(); ++g) {
        if (sizes[g] < GroupLifeTables::fewestCases) continue;
        Tabulation tabulation(intervals);
        for (const PooledObservation& o : sample.observations)
            if (o.group == static_cast<int>(g) + 1) tabulation.Add(o.time, o.Failed());
        status = ComputeLifeTable(tabulation.Counts(), Correction::On, result.tables[g]);
        if (status != Status::Success) return status;
    }
    return status;
}

} // namespace ozm::survival
