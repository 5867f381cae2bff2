#include "module/lifetable/LifeTable.h"

#include <algorithm>

namespace ozm::survival {
namespace {

double ProportionDead(double dying, double exposed, Correction correction) {
    const double q = dying / exposed;
    if (correction == Correction::On) {
        if (q == 1.0) return (exposed - 0.5) / exposed;
        if (q == 0.0) return 0.5 / exposed;
    }
    return q;
}

} // namespace

LifeTableStatus ComputeLifeTable(const IntervalCounts& counts, Correction correction, LifeTable& table) {
    if (!(counts.entering > 0.0) || counts.intervals <= 0) return LifeTableStatus::NoIntervals;
    const std::size_t intervals = std::min(static_cast<std::size_t>(counts.intervals), intervalSlots);

    table = LifeTable{};
    table.entering[0] = counts.entering;
    for (std::size_t i = 1; i < intervals; ++i) {
        table.entering[i] = table.entering[i - 1] - counts.withdrawn[i - 1] - counts.dying[i - 1];
        if (table.entering[i] < 0.0) return LifeTableStatus::NegativeEntering;
    }
    std::size_t entered = intervals; // stops at 1 at the latest, as somebody enters the first
    while (!(table.entering[entered - 1] > 0.0))
        --entered;
    for (std::size_t i = 1; i < intervals; ++i)
        if (!(counts.lower[i] > counts.lower[i - 1])) return LifeTableStatus::NoWidth;

    const std::size_t rows = std::min(entered + 1, intervals);
    table.rows = static_cast<int>(rows);
    table.cumulativeSurviving[0] = 1.0;
    for (std::size_t i = 0; i < rows; ++i) {
        table.lower[i] = counts.lower[i];
        table.withdrawn[i] = counts.withdrawn[i];
        table.dying[i] = counts.dying[i];
        table.exposed[i] = table.entering[i] - counts.withdrawn[i] / 2.0;
        const bool nobody = i + 1 == rows && table.exposed[i] == 0.0;
        table.proportionDead[i] =
            nobody ? 0.0 : ProportionDead(counts.dying[i], table.exposed[i], correction);
        table.proportionSurviving[i] = 1.0 - table.proportionDead[i];
        if (i > 0)
            table.cumulativeSurviving[i] =
                table.cumulativeSurviving[i - 1] * table.proportionSurviving[i - 1];
    }
    return LifeTableStatus::Success;
}

} // namespace ozm::survival
