#pragma once

#include "module/groups/PooledSample.h"
#include "module/lifetable/LifeTable.h"

#include <vector>

namespace ozm::survival {

/// The life tables of the groups over the same intervals: twelve lower limits from 0 to the largest time of
/// all groups, with proportions of 0 and 1 corrected.
struct GroupLifeTables {
    static constexpr int fewestCases = 3;

    std::vector<LifeTable> tables; ///< one per group; without rows for a group of fewer than `fewestCases`

    /// The rows of the longest table; 0 when no group has `fewestCases`.
    [[nodiscard]] int Rows() const;
};

/// Success, or what kept the tables from being computed: NoWidth when all times are 0.
LifeTableStatus ComputeGroupLifeTables(const PooledSample& sample, GroupLifeTables& result);

} // namespace ozm::survival
