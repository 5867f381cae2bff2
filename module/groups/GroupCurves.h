#pragma once

#include "module/groups/GroupLifeTables.h"
#include "module/groups/PooledSample.h"
#include "module/survdata/OutputResult.h"
#include "module/survdata/SharedSettings.h"
#include "support/CAnalysisSupport.h"

#include <cstdint>
#include <span>
#include <string>

namespace ozm::survival {

/// The groups of a comparison, for naming them in outputs; the grouping variable is the shared one.
struct NamedGroups {
    const SharedSettings& shared;
    std::span<const double> codes; ///< in the order of the groups

    /// A group, from 0: its code followed by the value label, "1 (6-MP)".
    [[nodiscard]] std::string Code(CAnalysisSupport& host, std::size_t group) const;
    /// As legends name it, "Group  1 (treatment = placebo)".
    [[nodiscard]] std::string Legend(CAnalysisSupport& host, std::size_t group) const;
};

/// Computes the tables of all groups; succeeds when at least one group has enough cases.
OutputResult TabulateGroups(const PooledSample& sample, GroupLifeTables& result);

/// Which column of the life tables is plotted: the proportion surviving the interval, or surviving to its
/// start.
enum class SurvivalPlot : std::uint8_t { PerInterval, Cumulative };

/// One line per group with a life table.
OutputResult PlotGroupSurvival(CAnalysisSupport& host, const NamedGroups& groups, const PooledSample& sample,
                               SurvivalPlot plot);

/// Details for a message of the life tables: how many cases the groups have, or the times and their
/// variables. Begins with a line break; empty for other messages.
std::string GroupLifeTablesReason(CAnalysisSupport& host, const NamedGroups& groups,
                                  const PooledSample& sample, int message);

} // namespace ozm::survival
