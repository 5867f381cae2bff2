#pragma once

#include "module/lifetable/LifeTable.h"
#include "module/twosample/PooledSample.h"

#include <array>

namespace ozm::survival {

/// The life tables of both groups over the same intervals: twelve lower limits from 0 to the largest time of
/// both groups, with proportions of 0 and 1 corrected.
struct GroupLifeTables {
    static constexpr int fewestCases = 3;

    std::array<LifeTable, 2> tables; ///< without rows for a group of fewer than `fewestCases`

    [[nodiscard]] int Rows() const;
};

/// Success, or what kept the tables from being computed: TooFewValid when no group has `fewestCases`, NoWidth
/// when all times are 0.
Status ComputeGroupLifeTables(const PooledSample& sample, GroupLifeTables& result);

} // namespace ozm::survival
