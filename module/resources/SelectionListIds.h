#pragma once

#include <cstdint>

namespace ozm::survival {

/// The eleven selection lists, in the order in which the analysis object and every dialog hold them.
enum SelectionListId : std::uint8_t {
    ListSurvivalTimes,
    ListCensoring,
    ListGrouping,
    ListCovariates,
    ListStrata,
    ListIntervalLimits,
    ListWithdrawn,
    ListDying,
    ListExpressionVariables,
    ListAuxiliary1, ///< no dialog fills the last two yet
    ListAuxiliary2,
    SelectionListCount,
};

} // namespace ozm::survival
