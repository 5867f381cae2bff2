#include "module/lifetable/LifeTable.h"

#include <algorithm>
#include <cmath>

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

void ComputeRates(LifeTable& table) {
    for (std::size_t i = 0; i < table.Closed(); ++i) {
        const double q = table.proportionDead[i];
        const double s = table.proportionSurviving[i];
        const double h = table.width[i];
        const double hazard = 2.0 * q / ((1.0 + s) * h);
        const double half = h * hazard / 2.0;
        table.density[i] = (table.cumulativeSurviving[i] - table.cumulativeSurviving[i + 1]) / h;
        table.hazard[i] = hazard;
        table.hazardVariance[i] =
            s < 1.0 ? (1.0 - half * half) * (hazard * hazard) / (table.exposed[i] * q) : 0.0;
    }
}

void ComputeErrors(LifeTable& table) {
    double greenwood = 0.0; // of the rows before
    for (std::size_t i = 0; i < table.Rows(); ++i) {
        const double q = table.proportionDead[i];
        const double s = table.proportionSurviving[i];
        const double p = table.cumulativeSurviving[i];
        const double exposed = table.exposed[i];
        table.survivingError[i] = std::sqrt(p * p * greenwood);
        if (i < table.Closed()) {
            const double perWidth = p * q / table.width[i];
            if (exposed * q > 0.0)
                table.densityError[i] = std::sqrt(perWidth * perWidth * (greenwood + s / (exposed * q)));
            table.hazardError[i] = std::sqrt(std::max(table.hazardVariance[i], 0.0));
        }
        if (s * exposed > 0.0) greenwood += q / (exposed * s);
    }
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
        if (i + 1 < rows) {
            table.width[i] = counts.lower[i + 1] - counts.lower[i];
            table.midpoint[i] = counts.lower[i] + table.width[i] / 2.0;
        }
    }
    ComputeRates(table);
    ComputeErrors(table);
    return LifeTableStatus::Success;
}

double LogLikelihood(const LifeTable& table) {
    double sum = 0.0;
    for (std::size_t i = 0; i < table.Closed(); ++i) {
        const double x = table.cumulativeSurviving[i + 1] / table.cumulativeSurviving[i];
        if (1.0 - x > 0.0) sum += table.dying[i] * std::log(1.0 - x);
        if (x > 0.0) sum += (table.exposed[i] - table.dying[i]) * std::log(x);
    }
    return sum;
}

} // namespace ozm::survival
