#include "module/groups/GroupLifeTables.h"

#include <algorithm>
#include <cstddef>

namespace ozm::survival {

int GroupLifeTables::Rows() const {
    int rows = 0;
    for (const LifeTable& table : tables)
        rows = std::max(rows, table.rows);
    return rows;
}

LifeTableStatus ComputeGroupLifeTables(const PooledSample& sample, GroupLifeTables& result) {
    result.tables.assign(sample.groups.size(), {});
    std::vector<Tabulation> tabulations(sample.groups.size(),
                                        Tabulation(IntervalsByNumber(sample.observations.back().time)));
    for (const PooledObservation& o : sample.observations)
        tabulations[static_cast<std::size_t>(o.group) - 1].Add(o.time, o.Failed());
    for (std::size_t g = 0; g < sample.groups.size(); ++g) {
        if (sample.groups[g].All() < GroupLifeTables::fewestCases) continue;
        const LifeTableStatus status =
            ComputeLifeTable(tabulations[g].Counts(), Correction::On, result.tables[g]);
        if (status != LifeTableStatus::Success) return status;
    }
    return LifeTableStatus::Success;
}

} // namespace ozm::survival
