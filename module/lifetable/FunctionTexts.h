#pragma once

#include "module/lifetable/LifeOutput.h"
#include "module/resources/LifeTables.h"

#include <cmath>
#include <cstddef>

namespace ozm::survival {

/// A function over the intervals: where its values are, and its texts.
struct FunctionTexts {
    LifeFunction function;
    int sheetTitle;
    int plotTitle;
    int axisTitle;
    int legend; ///< of the observed values
    IntervalColumn LifeTable::*observed;
    IntervalColumn DistributionFit::*fitted;

    /// The intervals that have an observed value: survival has one in the open row, too.
    [[nodiscard]] std::size_t Values(const LifeTable& table) const {
        return function == LifeFunction::Survival ? table.Rows() : table.Closed();
    }
    /// Whether the function of a fit was computed to its end and can be shown.
    [[nodiscard]] bool IsShown(const DistributionFit& fit, const LifeTable& table) const {
        return fit.IsShown() && std::isfinite((fit.*fitted)[Values(table) - 1]);
    }
};

inline constexpr FunctionTexts functionTexts[] = {
    {LifeFunction::Hazard, StrLifeHazardFunction, StrLifePlotHazard, StrLifeAxisHazard, StrLifeObservedHazard,
     &LifeTable::hazard, &DistributionFit::hazard},
    {LifeFunction::Survival, StrLifeSurvivalFunction, StrLifePlotSurvival, StrLifeAxisSurviving,
     StrLifeObservedSurvival, &LifeTable::cumulativeSurviving, &DistributionFit::survival},
    {LifeFunction::Density, StrLifeDensityFunction, StrLifePlotDensity, StrLifeAxisDensity,
     StrLifeObservedDensity, &LifeTable::density, &DistributionFit::density},
};

constexpr const FunctionTexts& TextsOf(LifeFunction function) {
    return functionTexts[static_cast<std::size_t>(function)];
}

} // namespace ozm::survival
